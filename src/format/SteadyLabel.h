#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// The panel's text for hosts that show it in a proportional font, where shorter rates would move
/// everything beside it. Adds spaces before each rate, as wide as the digits, the point and the
/// wider unit that "99.9M" has and this rate has not. Texts of other forms are unchanged.
[[nodiscard]] std::string steadyLabel(std::string_view label);

} // namespace tidewell
