#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The first character of a text.
struct Utf8Character {
  std::uint32_t codePoint = 0;
  std::size_t size = 0; // in bytes
};

/// Decodes the first character; nullopt if it is not well-formed: overlong forms, surrogates and
/// anything above U+10FFFF are rejected.
[[nodiscard]] std::optional<Utf8Character> firstCharacter(std::string_view bytes);

/// Whether the bytes are well-formed UTF-8.
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// The bytes with U+FFFD for each one that is not part of a well-formed character.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

} // namespace tidewell
