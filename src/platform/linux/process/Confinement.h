#pragma once

namespace tidewell {

/// Programs that this process starts from now on gain no privileges.
void forbidNewPrivileges();

/// Also prevents this process, its threads and its children from starting programs, from creating,
/// changing or removing files, and from reaching other programs except over the network: no sockets
/// of the session bus and the like, no signals. Open files stay open, and files can be read. For
/// programs that read data from strangers. Call it while there is one thread.
///
/// Files are protected by Landlock (since Linux 5.13), all else by a filter of system calls. Where
/// the kernel or a container does not support one of them, it does not hold. Returns whether both
/// do.
bool confineToNetwork();

} // namespace tidewell
