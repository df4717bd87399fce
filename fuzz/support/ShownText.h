#pragma once

#include "Require.h"
#include "base/Utf8.h"

#include <string_view>

namespace tidewell::fuzz {

/// That a text may go into a label: UTF-8 in which nothing controls the terminal, breaks a line or
/// turns the writing direction. Written anew, so that it does not repeat the mistakes of what it
/// checks.
inline void requireShowable(std::string_view text) {
  require(isUtf8(text));
  while (!text.empty()) {
    const auto character = firstCharacter(text);
    require(character.has_value());
    const std::uint32_t point = character->codePoint;
    require(point >= 0x20 && (point < 0x7F || point > 0x9F));
    require(point != 0x61C && point != 0x200E && point != 0x200F);
    require((point < 0x2028 || point > 0x202E) && (point < 0x2066 || point > 0x2069));
    text.remove_prefix(character->size);
  }
}

} // namespace tidewell::fuzz
