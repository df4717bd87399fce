#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// Whether the text could be a host name or address: letters, digits, dots, hyphens, underscores,
/// and colons in brackets. Pure.
[[nodiscard]] bool isHostName(std::string_view text);

/// The host and, unless it is 443, the port of an HTTPS address, in lower case ("host" or
/// "host:port"). Returns nullopt if the text is not such an address, is longer than 2000 bytes,
/// names a user, or contains blanks, control characters or other than ASCII. Pure.
[[nodiscard]] std::optional<std::string> httpsHost(std::string_view address);

/// The address of a configuration document in a settings file: its first line that is neither empty
/// nor a comment ("#"), trimmed; empty without one. Pure.
[[nodiscard]] std::string addressInSettings(std::string_view settings);

/// A server that the line is measured with.
struct TestServer {
  /// HTTPS addresses, all of one host: a body that takes longer than the test, one of a few bytes,
  /// and one that takes whatever is posted to it.
  std::string largeDownload;
  std::string smallDownload;
  std::string upload;
  /// The host to connect to instead of the addresses' own, whose name it still has to prove; empty
  /// for their own.
  std::string endpoint;

  friend bool operator==(const TestServer&, const TestServer&) = default;
};

/// The server unless the user names another.
[[nodiscard]] TestServer defaultServer();

/// The longest configuration document that is read, in bytes.
constexpr std::size_t longestDocument = 65'536;

/// The server that a configuration document describes: JSON, version 1, of the responsiveness draft
/// of the IETF, with the keys of its current and its earlier revisions. Returns nullopt if it
/// describes none. Any bytes may be given. Pure.
[[nodiscard]] std::optional<TestServer> parseServerDocument(std::string_view document);

} // namespace tidewell
