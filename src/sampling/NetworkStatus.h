#pragma once

#include <optional>
#include <string_view>

namespace tidewell {

/// How good the connection is, best first.
enum class NetworkStatus { excellent, good, degraded, down };

/// The name of a status as stored and sent: "excellent", "good", "degraded" or "down".
[[nodiscard]] std::string_view rawValue(NetworkStatus status);

/// The status with exactly this name; nullopt for any other text.
[[nodiscard]] std::optional<NetworkStatus> networkStatus(std::string_view rawValue);

} // namespace tidewell
