#include "helpers/networkQuality/TestServer.h"

#include "helpers/networkQuality/HttpsAddress.h"

#include <initializer_list>

#include <nlohmann/json.hpp>

namespace tidewell {

namespace {

using Json = nlohmann::json;

constexpr std::size_t longestHost = 253; // of the Domain Name System

/// The first of the members of these names that is an HTTPS address.
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

/// The host to connect to; empty when the document names none, none when it names no host.
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
