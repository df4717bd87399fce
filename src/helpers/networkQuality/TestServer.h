#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// A server that the line is measured against.
struct TestServer {
  /// HTTPS addresses, all of one host: a body that takes longer than the test, one of a few bytes,
  /// and one that takes whatever is posted to it.
  std::string largeDownload;
  std::string smallDownload;
  std::string upload;
  /// The host to connect to in place of the addresses' own, which still is the one to prove who it
  /// is; empty for their own.
  std::string endpoint;

  friend bool operator==(const TestServer&, const TestServer&) = default;
};

/// The server that is used unless the user names another.
[[nodiscard]] TestServer defaultServer();

/// The longest configuration document that is looked at, in bytes.
constexpr std::size_t longestDocument = 65'536;

/// The server that a configuration document describes (JSON, version 1, as the responsiveness draft
/// of the IETF has it, with the names of the addresses of its present and its earlier revisions);
/// none when it describes none: any bytes may be given. Pure.
[[nodiscard]] std::optional<TestServer> parseServerDocument(std::string_view document);

} // namespace tidewell
