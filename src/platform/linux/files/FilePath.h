#pragma once

#include <string>
#include <system_error>
#include <vector>

#include <sys/types.h>

namespace tidewell {

/// The last system call's error.
[[nodiscard]] std::error_code lastError();

/// The absolute path of this process's program, even if a newer one has replaced it since. Empty if
/// the kernel does not know.
[[nodiscard]] std::string runningProgram();

/// The directory of the file of this absolute path.
[[nodiscard]] std::string directoryOf(const std::string& path);

/// The path's last part.
[[nodiscard]] std::string nameOf(const std::string& path);

/// The path and every path that its symbolic links lead to. The last one is no link and need not
/// exist. Does not look at links in directories on the way.
[[nodiscard]] std::vector<std::string> linkChain(const std::string& path);

/// Creates the directory and its parents if they are missing, for the user alone.
[[nodiscard]] std::error_code makeDirectories(const std::string& path);

/// The user's configuration directory by the XDG Base Directory specification, given the values of
/// XDG_CONFIG_HOME and HOME (null if unset): the first if it is an absolute path, else ".config" in
/// the home directory. If HOME is not usable, the home directory is that of the user database.
[[nodiscard]] std::string configurationDirectory(const char* xdgConfigHome, const char* home);

/// The same from this process's environment.
[[nodiscard]] std::string configurationDirectory();

/// The user's directory for state, likewise: XDG_STATE_HOME, else ".local/state".
[[nodiscard]] std::string stateDirectory(const char* xdgStateHome, const char* home);
[[nodiscard]] std::string stateDirectory();

} // namespace tidewell
