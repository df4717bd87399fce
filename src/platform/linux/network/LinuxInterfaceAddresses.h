#pragma once

#include "platform/InterfaceAddresses.h"
#include "platform/linux/network/NetlinkMessages.h"

#include <optional>
#include <string>

namespace tidewell {

/// Returns the first IPv4 address, as dotted decimals, of the interface with this index in a reply
/// to RTM_GETADDR. Any bytes may be given. Pure.
[[nodiscard]] std::optional<std::string> parseFirstIPv4(NetlinkBytes reply,
                                                        unsigned interfaceIndex);

/// The kernel's addresses. May wait some tens of milliseconds while an interface is being made.
class LinuxInterfaceAddresses final : public InterfaceAddresses {
public:
  [[nodiscard]] std::optional<std::string> firstIPv4(const std::string& interface) override;
};

} // namespace tidewell
