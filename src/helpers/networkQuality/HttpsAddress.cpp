#include "helpers/networkQuality/HttpsAddress.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tidewell {

namespace {

constexpr std::string_view scheme = "https://";
constexpr std::size_t longestAddress = 2000;

bool isAsciiLetterOrDigit(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
         (letter >= '0' && letter <= '9');
}

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isPort(std::string_view text) {
  const bool isDigits =
      !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
  const auto number = isDigits ? parseInteger<std::int32_t>(text) : std::nullopt;
  return number && *number > 0 && *number < 65'536;
}

} // namespace

bool isHostName(std::string_view text) {
  const bool isBracketed = text.size() > 2 && text.front() == '[' && text.back() == ']';
  if (isBracketed) {
    text = text.substr(1, text.size() - 2);
    return text.find_first_not_of("0123456789abcdefABCDEF:.") == std::string_view::npos;
  }
  return !text.empty() && text.front() != '-' &&
         std::all_of(text.begin(), text.end(), [](char letter) {
           return isAsciiLetterOrDigit(letter) || letter == '-' || letter == '.' || letter == '_';
         });
}

std::optional<std::string> httpsHost(std::string_view address) {
  const bool isPlain = std::all_of(address.begin(), address.end(),
                                   [](char letter) { return letter > ' ' && letter < '\x7f'; });
  if (!isPlain || address.size() > longestAddress || !address.starts_with(scheme)) {
    return std::nullopt;
  }
  address.remove_prefix(scheme.size());
  const auto authority = address.substr(0, address.find_first_of("/?#"));
  const auto bracket = authority.find(']');
  const auto colon = authority.find(':', bracket == std::string_view::npos ? 0 : bracket);
  const bool hasPort = colon != std::string_view::npos;
  if (!isHostName(authority.substr(0, colon)) ||
      (hasPort && !isPort(authority.substr(colon + 1)))) {
    return std::nullopt;
  }
  const bool isUsualPort = hasPort && authority.substr(colon + 1) == "443";
  std::string host(isUsualPort ? authority.substr(0, colon) : authority);
  std::transform(host.begin(), host.end(), host.begin(), lower);
  return host;
}

} // namespace tidewell
