#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tidewell::nettop {

/// Names of users by their numbers.
using UserNames = std::map<std::uint32_t, std::string>;

/// The users of a text as /etc/passwd holds it; of several names of a number the first. Lines of
/// another form are skipped. Any text may be given. Pure.
[[nodiscard]] UserNames parseUserNames(std::string_view text);

/// The machine's own users, without asking any directory service: that would bring other people's
/// code and the network into this process.
[[nodiscard]] UserNames localUserNames();

} // namespace tidewell::nettop
