#include "platform/linux/TomlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace tidewell {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

// The size in bytes of the valid UTF-8 sequence at the start of the text; zero when there is none.
// The ranges are those of the Unicode Standard's table of well-formed byte sequences.
std::size_t sequenceSize(std::string_view text) {
  const auto byteAt = [text](std::size_t index) -> unsigned {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
  };
  const auto isWithin = [&](std::size_t index, unsigned low, unsigned high) {
    return byteAt(index) >= low && byteAt(index) <= high;
  };
  const unsigned first = byteAt(0);
  if (first < 0x80) {
    return text.empty() ? 0 : 1;
  }
  if (first >= 0xC2 && first <= 0xDF) {
    return isWithin(1, 0x80, 0xBF) ? 2 : 0;
  }
  if (first >= 0xE0 && first <= 0xEF) {
    const bool isSecondGood = isWithin(1, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF);
    return isSecondGood && isWithin(2, 0x80, 0xBF) ? 3 : 0;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    const bool isSecondGood = isWithin(1, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF);
    return isSecondGood && isWithin(2, 0x80, 0xBF) && isWithin(3, 0x80, 0xBF) ? 4 : 0;
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

std::string tomlText(const DefaultsValue& value) { return std::visit(TextOf{}, value); }

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
    const std::size_t size = sequenceSize(text);
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
