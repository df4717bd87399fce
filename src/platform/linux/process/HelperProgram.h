#pragma once

#include <string>

namespace tidewell {

/// The path of this helper for a program at this absolute path: in `libexec/tidewell` beside the
/// program's directory. Pure.
[[nodiscard]] std::string helperProgram(const std::string& program, const std::string& name);

} // namespace tidewell
