#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// Whether the text could be the name or the address of a host: letters, digits, dots, hyphens, and
/// in brackets colons.
[[nodiscard]] bool isHostName(std::string_view text);

/// The host and, unless it is the usual one, the port of an HTTPS address, in lower case ("host" or
/// "host:port"); none when the text is no such address, is longer than 2000 bytes, names a user, or
/// holds blanks, control characters or other than ASCII. Pure.
[[nodiscard]] std::optional<std::string> httpsHost(std::string_view address);

} // namespace tidewell
