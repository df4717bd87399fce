#include "base/DisplayText.h"

#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tidewell {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD"; // U+FFFD

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

// The Unicode categories Cc, Zl and Zp, and the characters with the property Bidi_Control.
constexpr std::array<Range, 7> unsafe = {{{0x00, 0x1F},
                                          {0x7F, 0x9F},
                                          {0x061C, 0x061C},
                                          {0x200E, 0x200F},
                                          {0x2028, 0x2029},
                                          {0x202A, 0x202E},
                                          {0x2066, 0x2069}}};

bool isUnsafe(std::uint32_t codePoint) {
  return std::ranges::any_of(unsafe, [codePoint](const Range& range) {
    return range.first <= codePoint && codePoint <= range.last;
  });
}

} // namespace

std::string displayText(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const auto character = firstCharacter(bytes);
    const bool isShown = character && !isUnsafe(character->codePoint);
    const std::size_t size = character ? character->size : 1;
    text += isShown ? bytes.substr(0, size) : replacement;
    bytes.remove_prefix(size);
  }
  return text;
}

} // namespace tidewell
