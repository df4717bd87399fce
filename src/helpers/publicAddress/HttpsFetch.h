#pragma once

#include <optional>
#include <string>

namespace tidewell {

/// The body of the reply to a GET, whatever its status; none when the address is no HTTPS one, when
/// the other end cannot prove who it is, when the body is longer than 4096 bytes, or when it has
/// not come as a whole after `limitMilliseconds`. Redirections are not followed. Proxies are used
/// as the environment tells curl to; `SSL_CERT_FILE`, where it is set, holds the authorities to
/// trust.
[[nodiscard]] std::optional<std::string> fetchOverHttps(const std::string& url,
                                                        long limitMilliseconds);

} // namespace tidewell
