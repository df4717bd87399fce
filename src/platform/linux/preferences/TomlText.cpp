#include "platform/linux/preferences/TomlText.h"

#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace tidewell {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The size in bytes of the character at the start of the text; zero when there is none.
std::size_t characterSize(std::string_view text) {
  constexpr std::size_t longest = 4;
  for (std::size_t size = 1; size <= std::min(longest, text.size()); ++size) {
    if (isUtf8(text.substr(0, size))) {
      return size;
    }
  }
  return 0;
}

std::string escape(unsigned char control) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  return {'\\', 'u', '0', '0', digits[control >> 4U], digits[control & 15U]};
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char character : validUtf8(text)) {
    const auto byte = static_cast<unsigned char>(character);
    if (character == '"' || character == '\\') {
      result += {'\\', character};
    } else if (byte < 0x20 || byte == 0x7F) {
      result += escape(byte);
    } else {
      result += character;
    }
  }
  return result + '"';
}

std::string integerText(std::int64_t value) {
  std::array<char, 24> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return {buffer.data(), result.ptr};
}

std::string realText(double value) {
  if (std::isnan(value)) {
    return "nan";
  }
  if (std::isinf(value)) {
    return value < 0 ? "-inf" : "inf";
  }
  std::array<char, 32> buffer{}; // the shortest text that reads back the same has 24 characters
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  std::string text(buffer.data(), result.ptr);
  // Without either it would be read back as an integer.
  return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

struct TextOf {
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return integerText(value); }
  std::string operator()(double value) const { return realText(value); }
  std::string operator()(const std::string& value) const { return quoted(value); }
};

} // namespace

std::string tomlText(const PreferenceValue& value) { return std::visit(TextOf{}, value); }

std::string tomlKey(std::string_view key) {
  const bool isBare = !key.empty() && std::ranges::all_of(key, [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '-';
  });
  return isBare ? std::string(key) : quoted(key);
}

std::string validUtf8(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t size = characterSize(text);
    if (size == 0) {
      result += replacementCharacter;
      text.remove_prefix(1);
    } else {
      result += text.substr(0, size);
      text.remove_prefix(size);
    }
  }
  return result;
}

} // namespace tidewell
