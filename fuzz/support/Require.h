#pragma once

#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

namespace tidewell::fuzz {

/// Aborts unless the condition holds; the fuzzer reports it.
inline void require(bool condition, int line = __builtin_LINE(),
                    const char* file = __builtin_FILE()) {
  if (!condition) {
    std::fprintf(stderr, "%s:%d: a rule is broken\n", file, line);
    std::abort();
  }
}

/// The input as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The input in memory of exactly its size, aligned like a buffer for the kernel's messages.
inline std::vector<std::byte> messagesOf(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  return {bytes.begin(), bytes.end()};
}

/// Requires that a text is safe for a label: UTF-8 without control characters, line breaks and
/// direction changes. Does not use displayText, which it checks.
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

/// Whether sums over a per-process text may overflow. That aborts on purpose; the helper never
/// writes such numbers.
inline bool maySumOverflow(std::string_view text) {
  std::size_t digits = 0;
  for (const char character : text) {
    digits = character >= '0' && character <= '9' ? digits + 1 : 0;
    if (digits > 15) {
      return true;
    }
  }
  return false;
}

} // namespace tidewell::fuzz
