#include "helpers/networkQuality/TestServer.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include <nlohmann/json.hpp>

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

using Json = nlohmann::json;

constexpr std::size_t longestHost = 253; // of the Domain Name System

/// The first of these members that is an HTTPS address.
std::optional<std::string> addressIn(const Json& urls, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const auto found = urls.find(name);
    if (found != urls.end() && found->is_string() &&
        httpsHost(found->get_ref<const std::string&>())) {
      return found->get<std::string>();
    }
  }
  return std::nullopt;
}

/// The host to connect to; empty if the document names none, nullopt if the name is invalid.
std::optional<std::string> endpointIn(const Json& document) {
  const auto found = document.find("test_endpoint");
  if (found == document.end() || found->is_null()) {
    return std::string();
  }
  if (!found->is_string()) {
    return std::nullopt;
  }
  const auto& host = found->get_ref<const std::string&>();
  const bool isHost = isHostName(host) && host.size() <= longestHost;
  return isHost || host.empty() ? std::optional(host) : std::nullopt;
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

std::string addressInSettings(std::string_view settings) {
  for (const std::string_view line : splitAt(settings, '\n')) {
    const std::string_view text = trim(line);
    if (!text.empty() && text.front() != '#') {
      return std::string(text);
    }
  }
  return {};
}

TestServer defaultServer() {
  return {"https://h3.speed.cloudflare.com/__down?bytes=10000000000",
          "https://h3.speed.cloudflare.com/__down?bytes=10",
          "https://h3.speed.cloudflare.com/__up",
          {}};
}

std::optional<TestServer> parseServerDocument(std::string_view document) {
  if (document.size() > longestDocument) {
    return std::nullopt;
  }
  const Json json = Json::parse(document, nullptr, false);
  if (!json.is_object() || json.value("version", Json()) != 1 ||
      !json.value("urls", Json()).is_object()) {
    return std::nullopt;
  }
  const Json& urls = json["urls"];
  const auto large = addressIn(urls, {"large_download_url", "large_https_download_url"});
  const auto small = addressIn(urls, {"small_download_url", "small_https_download_url"});
  const auto upload = addressIn(urls, {"upload_url", "https_upload_url"});
  const auto endpoint = endpointIn(json);
  if (!large || !small || !upload || !endpoint || httpsHost(*large) != httpsHost(*small) ||
      httpsHost(*large) != httpsHost(*upload)) {
    return std::nullopt;
  }
  return TestServer{*large, *small, *upload, *endpoint};
}

} // namespace tidewell
