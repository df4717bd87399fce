#pragma once

#include "base/Interface.h"

#include <optional>
#include <string>

namespace tidewell {

/// Reads the addresses of network interfaces.
class InterfaceAddresses : public Interface {
public:
  /// The first IPv4 address, in the system's order, of the interface with exactly this name in
  /// dotted-decimal form; nullopt without one.
  [[nodiscard]] virtual std::optional<std::string> firstIPv4(const std::string& interface) = 0;
};

} // namespace tidewell
