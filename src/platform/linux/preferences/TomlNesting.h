#pragma once

#include <cstddef>
#include <string_view>

namespace tidewell {

/// How many dots a text that may be TOML has outside strings and comments: no key of it nests
/// deeper than that. Exact up to the first error in the text, where a reader stops.
[[nodiscard]] std::size_t tomlDots(std::string_view text);

} // namespace tidewell
