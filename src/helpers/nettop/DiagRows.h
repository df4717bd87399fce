#pragma once

#include "helpers/nettop/DeviceTraffic.h"
#include "helpers/nettop/ProcessTraffic.h"
#include "helpers/nettop/SocketHolders.h"
#include "helpers/nettop/TcpReading.h"
#include "helpers/nettop/UserNames.h"

#include <vector>

namespace tidewell::nettop {

/// The rows that follow from what TCP sockets moved and from who holds them: a row for each
/// process, one for each user whose processes could not be looked at, one for sockets without
/// either, and one for
/// what the interfaces moved (`all`) beyond that. Pure.
[[nodiscard]] std::vector<ProcessTraffic> diagRows(const std::vector<TcpReading>& movement,
                                                   const Holders& holders, const UserNames& users,
                                                   const DeviceTraffic& all);

} // namespace tidewell::nettop
