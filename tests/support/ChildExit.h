#pragma once

#include "platform/linux/process/SpawnedChild.h"

namespace tidewell::test {

/// Returns true if the child has exited.
inline Async<bool> exitOf(SpawnedChild& child) {
  co_await child.exit();
  co_return true;
}

} // namespace tidewell::test
