#pragma once

#include "platform/linux/loop/FileDescriptor.h"

namespace tidewell::nettop {

/// The root of the control groups of version 2, wherever it is mounted by custom; closed where
/// there is none.
[[nodiscard]] FileDescriptor openControlGroups();

} // namespace tidewell::nettop
