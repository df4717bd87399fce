#pragma once

#include "platform/InterfaceAddresses.h"

#include <optional>
#include <string>

namespace tidewell {

/// The kernel's addresses. May wait some tens of milliseconds while an interface is being made.
class LinuxInterfaceAddresses final : public InterfaceAddresses {
public:
  [[nodiscard]] std::optional<std::string> firstIPv4(const std::string& interface) override;
};

} // namespace tidewell
