#pragma once

#include <string>

namespace tidewell {

/// The path of this helper for a program at this absolute path: in `libexec/tidewell` beside the
/// program's directory. Empty if the program's path is not absolute, which happens without `/proc`:
/// no file in the working directory is ever run. Pure.
[[nodiscard]] std::string helperProgram(const std::string& program, const std::string& name);

} // namespace tidewell
