#pragma once

#include "helpers/nettop/ProcessTraffic.h"
#include "helpers/nettop/UserNames.h"

#include <cstdint>
#include <vector>

namespace tidewell::nettop {

/// Whether the administrator has hidden other users' processes from this one (hidepid): what the
/// kernel tells this process about /proc/1 says so. Privileges for reading /proc must be given up.
[[nodiscard]] bool areOthersHidden();

/// The rows in which the processes of each user but `caller` have become one row, which names the
/// user and no program. Rows that are nobody's stay. Pure.
[[nodiscard]] std::vector<ProcessTraffic> foldOthers(const std::vector<ProcessTraffic>& rows,
                                                     std::uint32_t caller, const UserNames& names);

/// The name of the row that stands for all that a user's programs moved. Pure.
[[nodiscard]] std::string userRow(std::uint32_t user, const UserNames& names);

} // namespace tidewell::nettop
