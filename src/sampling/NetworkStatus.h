#pragma once

#include <optional>
#include <string_view>

namespace tidewell {

/// How good the connection is, best first.
enum class NetworkStatus { excellent, good, degraded, down };

/// The name of a status, as it is stored and sent: "excellent", "good", "degraded" or "down".
[[nodiscard]] std::string_view rawValue(NetworkStatus status);

/// The status of exactly this name; none for any other text.
[[nodiscard]] std::optional<NetworkStatus> networkStatus(std::string_view rawValue);

} // namespace tidewell
