#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// A character at the start of a text.
struct Utf8Character {
  std::uint32_t codePoint = 0;
  std::size_t size = 0; // in bytes
};

/// The character at the start of the bytes; none when they do not start with a well-formed one: no
/// overlong form, no surrogate, nothing above U+10FFFF.
[[nodiscard]] std::optional<Utf8Character> firstCharacter(std::string_view bytes);

/// Whether the bytes are well-formed UTF-8.
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// The bytes with U+FFFD for each one that is not part of a well-formed character.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

} // namespace tidewell
