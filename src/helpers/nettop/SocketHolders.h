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
  std::string name; // of its executable, else the one that the kernel keeps
  std::int32_t process = 0;
  std::uint32_t user = 0;
};

using Holders = std::unordered_map<std::uint32_t, Holder>; // by the sockets' inodes

/// Finds in /proc who holds the sockets of these inodes, the newest processes first, and stops when
/// all are found. What the caller may not look at is left out.
[[nodiscard]] Holders findHolders(std::unordered_set<std::uint32_t> inodes);

/// The inode in what a link of /proc/PID/fd leads to; none when it leads to no socket. Any text may
/// be given. Pure.
[[nodiscard]] std::optional<std::uint32_t> socketInode(std::string_view link);

/// The name of the executable in what /proc/PID/exe leads to. Any text may be given. Pure.
[[nodiscard]] std::string executableName(std::string_view link);

} // namespace tidewell::nettop
