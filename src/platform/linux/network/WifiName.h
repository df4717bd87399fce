#pragma once

#include "platform/linux/network/WifiMessages.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Name, fit for display, of the network of the wireless interface with this index; when none has
/// it (the traffic goes through a tunnel, say), of the first one that is on a network. Pure.
[[nodiscard]] std::optional<std::string>
chooseWifiName(const std::vector<WirelessInterface>& interfaces, std::optional<int> primaryIndex);

/// The same for the interfaces that the kernel knows. Any thread; may wait some tens of
/// milliseconds while an interface is being made.
[[nodiscard]] std::optional<std::string> askWifiName(std::optional<int> primaryIndex);

} // namespace tidewell
