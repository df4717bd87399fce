#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// Makes bytes safe for a label. Invalid UTF-8 bytes and invisible characters that change how their
/// surroundings look (controls, line and paragraph separators, bidirectional controls) become
/// U+FFFD. For names chosen by strangers, which could otherwise pass for the program's own words.
[[nodiscard]] std::string displayText(std::string_view bytes);

} // namespace tidewell
