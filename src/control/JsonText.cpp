#include "control/JsonText.h"

#include "base/Utf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tidewell {
namespace {

constexpr std::string_view hexDigits = "0123456789abcdef";
constexpr unsigned char firstPrintable = 0x20;

std::string escaped(char byte) {
  switch (byte) {
  case '"':
    return "\\\"";
  case '\\':
    return "\\\\";
  case '\n':
    return "\\n";
  case '\t':
    return "\\t";
  default:
    break;
  }
  const auto code = static_cast<unsigned char>(byte);
  if (code >= firstPrintable) {
    return {byte};
  }
  std::string text = "\\u00";
  text += hexDigits[code >> 4U];
  text += hexDigits[code & 0xFU];
  return text;
}

template <class Number> std::string shortestText(Number value) {
  std::array<char, 32> text{}; // the longest double takes 24
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

} // namespace

std::string jsonText(bool value) { return value ? "true" : "false"; }

std::string jsonText(std::int64_t value) { return shortestText(value); }

std::string jsonText(double value) { return std::isfinite(value) ? shortestText(value) : "null"; }

std::string jsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char byte : validUtf8(text)) {
    quoted += escaped(byte);
  }
  return quoted + "\"";
}

std::string jsonText(const char* text) { return jsonText(std::string_view(text)); }

} // namespace tidewell
