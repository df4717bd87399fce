#pragma once

namespace tidewell {

/// Nothing that this process starts from now on gets more privileges than it has itself.
void forbidNewPrivileges();

/// In addition this process, its threads and children can neither start another program nor make,
/// change or remove a file from now on. What is open stays open. For programs that read what
/// strangers on the network send; call it while there is one thread.
///
/// Where the kernel cannot do it (before 5.13, or where a container forbids it) all works as
/// without. Returns whether it holds.
bool forbidWritingAndStarting();

} // namespace tidewell
