#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// The bytes as text that is safe in a label: each byte that belongs to no UTF-8 character, and
/// each character that does not show but changes how its surroundings do (controls, line and
/// paragraph separators, marks of writing direction), becomes U+FFFD. For names that strangers
/// chose: a line break or a reversal of direction in them could pass for the program's own words.
[[nodiscard]] std::string displayText(std::string_view bytes);

} // namespace tidewell
