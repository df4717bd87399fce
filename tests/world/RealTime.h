#pragma once

#include <sched.h>

namespace tidewell::world {

/// Puts the calling process before everything else on the machine, so that measuring does not
/// depend on what else is running. Where that is forbidden, nothing changes.
inline void takePrecedence() {
  const sched_param priority{.sched_priority = 10};
  ::sched_setscheduler(0, SCHED_FIFO, &priority);
}

} // namespace tidewell::world
