#pragma once

#include "helpers/nettop/DeviceTraffic.h"
#include "helpers/nettop/Measurement.h"
#include "helpers/nettop/SocketHolders.h"
#include "helpers/nettop/TcpTraffic.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell::nettop {

/// Names of users by their numbers.
using UserNames = std::map<std::uint32_t, std::string>;

/// Reads the users from the text of /etc/passwd; of several names of a number the first. Skips
/// lines of another form. Any text may be given. Pure.
[[nodiscard]] UserNames parseUserNames(std::string_view text);

/// The machine's own users. Asks no directory service, which would bring foreign code and the
/// network into this process.
[[nodiscard]] UserNames localUserNames();

/// The name of the row for all that a user's programs moved. Pure.
[[nodiscard]] std::string userRow(std::uint32_t user, const UserNames& names);

/// Makes rows from what TCP sockets moved and who holds them: one for each process, one for each
/// user whose processes may not be looked at, one for sockets without either, and one for what the
/// interfaces moved (`all`) beyond that. Pure.
[[nodiscard]] std::vector<ProcessTraffic> diagRows(const std::vector<TcpReading>& movement,
                                                   const Holders& holders, const UserNames& users,
                                                   const DeviceTraffic& all);

/// Whether the administrator has hidden other users' processes from this one (hidepid), which shows
/// at /proc/1. Privileges for reading /proc must be given up before.
[[nodiscard]] bool areOthersHidden();

/// Merges the rows of each user but `caller` into one, which names the user and no program. Rows
/// that belong to nobody stay. Pure.
[[nodiscard]] std::vector<ProcessTraffic> foldOthers(const std::vector<ProcessTraffic>& rows,
                                                     std::uint32_t caller, const UserNames& names);

} // namespace tidewell::nettop
