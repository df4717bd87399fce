#pragma once

#include <string>
#include <system_error>
#include <vector>

#include <sys/types.h>

namespace tidewell {

/// The last system call's error.
[[nodiscard]] std::error_code lastError();

/// The directory that holds the file of this absolute path.
[[nodiscard]] std::string directoryOf(const std::string& path);

/// The path's last part.
[[nodiscard]] std::string nameOf(const std::string& path);

/// The path and every path that its symbolic links lead to, the last of which is no link (it need
/// not exist). Links in directories on the way are the kernel's business.
[[nodiscard]] std::vector<std::string> linkChain(const std::string& path);

/// Makes the directory and those above it where they are missing, for the user alone.
[[nodiscard]] std::error_code makeDirectories(const std::string& path);

} // namespace tidewell
