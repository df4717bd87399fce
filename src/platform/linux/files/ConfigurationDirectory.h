#pragma once

#include <string>

namespace tidewell {

/// The user's configuration directory as the XDG Base Directory specification finds it, from the
/// values of XDG_CONFIG_HOME and HOME (null when unset): the first when it is an absolute path,
/// else ".config" in the home directory, which is that of the user database when HOME is none.
[[nodiscard]] std::string configurationDirectory(const char* xdgConfigHome, const char* home);

/// The same from this process's environment. Main thread, before others start.
[[nodiscard]] std::string configurationDirectory();

} // namespace tidewell
