#include "platform/linux/files/DesktopEntry.h"

namespace tidewell {

namespace {

// What has a meaning between double quotes gets a backslash, "%" is doubled.
std::string quotedArgument(std::string_view argument) {
  constexpr std::string_view special = "\"`$\\";
  std::string result = "\"";
  for (const char character : argument) {
    if (special.find(character) != std::string_view::npos) {
      result += '\\';
    } else if (character == '%') {
      result += '%';
    }
    result += character;
  }
  return result + '"';
}

} // namespace

std::string stringValue(std::string_view text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
    case '\\':
      result += "\\\\";
      break;
    case '\n':
      result += "\\n";
      break;
    case '\t':
      result += "\\t";
      break;
    case '\r':
      result += "\\r";
      break;
    default:
      result += character;
    }
  }
  return result;
}

std::string execValue(std::string_view programPath) {
  return stringValue(quotedArgument(programPath));
}

} // namespace tidewell
