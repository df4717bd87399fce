#pragma once

namespace tidewell {

/// Programs that this process starts from now on gain no privileges.
void forbidNewPrivileges();

/// Also prevents this process, its threads and its children from starting programs and from
/// creating, changing or removing files. Open files stay open. For programs that read data from
/// strangers. Call it while there is one thread.
///
/// Without kernel support (before 5.13, or forbidden by a container) nothing changes. Returns
/// whether it took effect.
bool forbidWritingAndStarting();

} // namespace tidewell
