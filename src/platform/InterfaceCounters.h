#pragma once

#include "base/Interface.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tidewell {

/// Bytes received and sent by an interface.
struct ByteCounts {
  std::int64_t bytesIn = 0;
  std::int64_t bytesOut = 0;

  friend bool operator==(const ByteCounts&, const ByteCounts&) = default;
};

/// Reads the byte counters of network interfaces.
class InterfaceCounters : public Interface {
public:
  /// The counters of the interface with exactly this name, from an origin that the platform
  /// chooses; nullopt if there is no such interface or it cannot be read.
  [[nodiscard]] virtual std::optional<ByteCounts> read(const std::string& interface) = 0;
};

} // namespace tidewell
