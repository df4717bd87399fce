#pragma once

namespace tidewell {

/// Makes the kernel refuse system calls by which this process, its threads and its children could
/// act on other programs or change files in ways that Landlock does not cover: sockets other than
/// those of IPv4, IPv6 and netlink, io_uring (which would open them unseen), signals to others,
/// their priorities and limits, shared memory and keys, starting programs, the owner, mode, times
/// and attributes of files, and input for a terminal. Tracing is left to Landlock, which confines
/// it to this process.
///
/// Call after forbidNewPrivileges(). Returns whether it took effect; false on processors other than
/// x86-64, AArch64 and RISC-V, and where the kernel or a container forbids it.
bool filterSystemCalls();

} // namespace tidewell
