#pragma once

#include "connectivity/ConnectionInfo.h"

#include <QString>

namespace tidewell {

// The connection's details are English on the bus. These are their texts in the user's language.

[[nodiscard]] QString interfaceTypeText(ConnectionInfo::InterfaceType type);

/// The link kind and the device, such as "Wi-Fi (wlan0)".
[[nodiscard]] QString interfaceNameText(const ConnectionInfo& info);

/// The network's name, or what stands for it.
[[nodiscard]] QString networkNameText(const ConnectionInfo& info);

} // namespace tidewell
