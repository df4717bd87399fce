#pragma once

#include "helpers/nettop/TcpReading.h"

#include <vector>

namespace tidewell::nettop {

/// What the sockets moved between two readings, in `received` and `sent`, each socket that moved
/// anything once. `before` and `after` are all that there were then, `ended` those that were
/// closed in between, with their last counters; the inode and the user of such a one are those it
/// had before. Connections of the machine with itself are left out: by their addresses, or since
/// both of their ends are here. Pure.
[[nodiscard]] std::vector<TcpReading>
tcpMovement(const TcpReadings& before, const TcpReadings& after, const TcpReadings& ended);

} // namespace tidewell::nettop
