#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// The address of a configuration document in a settings file: its first line that is neither empty
/// nor a comment ("#"), without blanks around it; empty without one. Pure.
[[nodiscard]] std::string addressInSettings(std::string_view settings);

} // namespace tidewell
