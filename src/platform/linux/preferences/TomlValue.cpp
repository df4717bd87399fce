#include "platform/linux/preferences/TomlValue.h"

#include "base/NumberText.h"
#include "base/Utf8.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>

namespace tidewell {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view keyCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";

std::string_view take(std::string_view& text, std::size_t size) {
  const std::string_view taken = text.substr(0, size);
  text.remove_prefix(taken.size());
  return taken;
}

// Removes these characters from the start of the text.
std::string_view takeAny(std::string_view& text, std::string_view characters) {
  return take(text, text.find_first_not_of(characters));
}

bool takeNewline(std::string_view& text) {
  const std::size_t size = text.starts_with('\n') ? 1 : text.starts_with("\r\n") ? 2 : 0;
  return !take(text, size).empty();
}

bool isControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

bool isQuote(char character) { return character == '"' || character == '\''; }

void appendUtf8(std::string& text, std::uint32_t codePoint) {
  constexpr std::array<std::uint32_t, 4> leads{0, 0xC0, 0xE0, 0xF0};
  const unsigned following = codePoint < 0x80      ? 0
                             : codePoint < 0x800   ? 1
                             : codePoint < 0x10000 ? 2
                                                   : 3;
  text += static_cast<char>(leads[following] | codePoint >> 6 * following);
  for (unsigned left = following; left-- > 0;) {
    text += static_cast<char>(0x80U | (codePoint >> 6 * left & 0x3FU));
  }
}

// Reads what follows a backslash. Surrogates are refused later, as invalid UTF-8.
bool readEscape(std::string_view& text, std::string& value) {
  constexpr std::string_view letters = "btnfr\"\\";
  constexpr std::string_view meanings = "\b\t\n\f\r\"\\";
  constexpr std::uint32_t highestCodePoint = 0x10FFFF;
  const std::string_view letter = take(text, 1);
  if (const auto index = letters.find(letter); !letter.empty() && index != std::string_view::npos) {
    value += meanings[index];
    return true;
  }
  const std::size_t size = letter == "u" ? 4 : letter == "U" ? 8 : 0;
  const std::string_view hexadecimal = take(text, size);
  const char* const end = hexadecimal.data() + hexadecimal.size();
  std::uint32_t codePoint = 0;
  const auto result = std::from_chars(hexadecimal.data(), end, codePoint, 16);
  if (size == 0 || hexadecimal.size() != size || result.ec != std::errc{} || result.ptr != end ||
      codePoint > highestCodePoint) {
    return false;
  }
  appendUtf8(value, codePoint);
  return true;
}

// Skips the rest of the line and all blanks after it, which a backslash at its end removes.
bool skipJoint(std::string_view& text) {
  std::string_view rest = text;
  takeAny(rest, " \t");
  if (!takeNewline(rest)) {
    return false;
  }
  text = rest;
  do {
    takeAny(text, " \t");
  } while (takeNewline(text));
  return true;
}

// Reads a string of any of the four kinds.
std::optional<std::string> readString(std::string_view& text) {
  const char quote = text.front();
  const bool isMultiLine = text.starts_with(std::string(3, quote));
  const std::string end(isMultiLine ? 3 : 1, quote);
  take(text, end.size());
  if (isMultiLine) {
    takeNewline(text);
  }
  std::string value;
  while (!text.starts_with(end)) {
    if (isMultiLine && takeNewline(text)) {
      value += '\n';
      continue;
    }
    const std::string_view character = take(text, 1);
    const bool isEscape = character == "\\" && quote == '"';
    if (character.empty() || (isControl(character.front()) && character != "\t") ||
        (isEscape && !(isMultiLine && skipJoint(text)) && !readEscape(text, value))) {
      return std::nullopt;
    }
    value += isEscape ? "" : character;
  }
  take(text, end.size());
  // Up to two quotes may precede the three that end the string.
  for (int extra = 0; isMultiLine && extra < 2 && text.starts_with(quote); ++extra) {
    value += take(text, 1);
  }
  return isUtf8(value) ? std::optional(std::move(value)) : std::nullopt;
}

// Skips an array or an inline table. A "=" in an array, or a line end in a table, is a missing end.
bool skipBrackets(std::string_view& text) {
  std::string open;
  while (!text.empty()) {
    if (isQuote(text.front())) {
      if (!readString(text)) {
        return false;
      }
      continue;
    }
    const char character = take(text, 1).front();
    const char innermost = open.empty() ? '\0' : open.back();
    if (character == '#') {
      take(text, text.find('\n'));
    } else if (character == '[' || character == '{') {
      open += character;
    } else if ((character == ']' && innermost == '[') || (character == '}' && innermost == '{')) {
      open.pop_back();
      if (open.empty()) {
        return true;
      }
    } else if (character == ']' || character == '}' || (character == '=' && innermost == '[') ||
               (character == '\n' && innermost == '{')) {
      return false;
    }
  }
  return false;
}

bool isDigit(char character) { return digits.find(character) != std::string_view::npos; }

// The number without its underscores, or nullopt if one of them or the point is not between digits.
std::optional<std::string> withoutUnderscores(std::string_view token) {
  const std::string_view between = token.starts_with("0x") ? "0123456789ABCDEFabcdef" : digits;
  std::string text;
  for (std::size_t index = 0; index < token.size(); ++index) {
    const bool isSeparator = token[index] == '_' || token[index] == '.';
    if (isSeparator && (index == 0 || index + 1 == token.size() ||
                        between.find(token[index - 1]) == std::string_view::npos ||
                        between.find(token[index + 1]) == std::string_view::npos)) {
      return std::nullopt;
    }
    text += token[index] == '_' ? "" : token.substr(index, 1);
  }
  return text;
}

std::optional<PreferenceValue> readInteger(std::string_view text, int base) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, base);
  return result.ec == std::errc{} && result.ptr == end ? std::optional<PreferenceValue>(value)
                                                       : std::nullopt;
}

std::optional<PreferenceValue> readNumber(std::string_view token) {
  const auto number = withoutUnderscores(token);
  std::string_view text = number ? *number : std::string_view();
  for (const auto& [prefix, base] : {std::pair("0x", 16), {"0o", 8}, {"0b", 2}}) {
    if (text.starts_with(prefix) && !text.starts_with(std::string(prefix) + '-')) {
      return readInteger(text.substr(2), base);
    }
  }
  take(text, text.starts_with('+') ? 1 : 0);
  const auto magnitude = text.substr(text.starts_with('-') && token.front() == '-' ? 1 : 0);
  if (magnitude == "inf") {
    return std::copysign(std::numeric_limits<double>::infinity(), token.front() == '-' ? -1 : 1);
  }
  if (magnitude == "nan") {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const bool hasExtraZero = magnitude.size() > 1 && magnitude[0] == '0' && isDigit(magnitude[1]);
  if (magnitude.empty() || !isDigit(magnitude[0]) || hasExtraZero) {
    return std::nullopt;
  }
  return magnitude.find_first_not_of(digits) == std::string_view::npos ? readInteger(text, 10)
                                                                       : parseDouble(text);
}

// Whether the text starts like the example, with any digit for a 0.
bool startsLike(std::string_view text, std::string_view example) {
  return text.size() >= example.size() &&
         std::equal(example.begin(), example.end(), text.begin(), [](char wanted, char found) {
           return wanted == '0' ? isDigit(found) : found == wanted;
         });
}

// Reads a value without quotes or brackets. It ends with its line or before a comment.
std::optional<TomlValue> readBareValue(std::string_view& text) {
  const std::string_view line = text.substr(0, text.find_first_of("#\n"));
  const std::string_view token = take(text, line.find_last_not_of(" \t\r") + 1);
  if (token == "true" || token == "false") {
    return TomlValue{token == "true"};
  }
  if (startsLike(token, "0000-00-00") || startsLike(token, "00:00")) {
    return TomlValue{};
  }
  const auto number = readNumber(token);
  return number ? std::optional(TomlValue{number}) : std::nullopt;
}

std::string quoted(std::string_view text) {
  constexpr std::string_view hexadecimal = "0123456789ABCDEF";
  std::string result = "\"";
  for (const char character : validUtf8(text)) {
    const auto byte = static_cast<unsigned char>(character);
    if (isControl(character)) {
      result += {'\\', 'u', '0', '0', hexadecimal[byte >> 4U], hexadecimal[byte & 15U]};
    } else {
      result += character == '"' || character == '\\' ? "\\" : "";
      result += character;
    }
  }
  return result + '"';
}

struct TextOf {
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(const std::string& value) const { return quoted(value); }
  std::string operator()(double value) const {
    if (std::isnan(value)) {
      return "nan";
    }
    std::array<char, 32> buffer{}; // the shortest text that reads back the same has 24 characters
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    const std::string text(buffer.data(), result.ptr);
    // Without a point or an exponent it would be read back as an integer.
    return text.find_first_of(".en") == std::string::npos ? text + ".0" : text;
  }
};

} // namespace

std::optional<TomlValue> readTomlValue(std::string_view& text) {
  if (text.empty()) {
    return std::nullopt;
  }
  if (isQuote(text.front())) {
    auto string = readString(text);
    return string ? std::optional(TomlValue{*std::move(string)}) : std::nullopt;
  }
  if (text.front() == '[' || text.front() == '{') {
    return skipBrackets(text) ? std::optional(TomlValue{}) : std::nullopt;
  }
  return readBareValue(text);
}

std::optional<std::string> readTomlKey(std::string_view& text) {
  if (text.starts_with(R"(""")") || text.starts_with("'''")) {
    return std::nullopt;
  }
  if (!text.empty() && isQuote(text.front())) {
    return readString(text);
  }
  const std::string_view key = takeAny(text, keyCharacters);
  return key.empty() ? std::nullopt : std::optional<std::string>(key);
}

std::string tomlText(const PreferenceValue& value) { return std::visit(TextOf{}, value); }

std::string tomlKey(std::string_view key) {
  const bool isBare =
      !key.empty() && key.find_first_not_of(keyCharacters) == std::string_view::npos;
  return isBare ? std::string(key) : quoted(key);
}

} // namespace tidewell
