#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace tidewell::nettop {

/// A process that holds a socket.
struct Holder {
  std::string name; // of its executable, else its name in the kernel
  std::int32_t process = 0;
  std::uint32_t user = 0;
};

using Holders = std::unordered_map<std::uint32_t, Holder>; // by the sockets' inodes

/// Finds in /proc which processes hold the sockets of these inodes, newest processes first. Leaves
/// out those that the caller may not look at.
[[nodiscard]] Holders findHolders(std::unordered_set<std::uint32_t> inodes);

/// The inode in the target of a link of /proc/PID/fd; nullopt if that is not a socket. Any text may
/// be given. Pure.
[[nodiscard]] std::optional<std::uint32_t> socketInode(std::string_view link);

/// The name of the executable in the target of /proc/PID/exe. Any text may be given. Pure.
[[nodiscard]] std::string executableName(std::string_view link);

} // namespace tidewell::nettop
