#pragma once

#include "helpers/nettop/Measurement.h"

namespace tidewell::nettop {

/// Measures a second by the counters of the TCP sockets of this network namespace. Needs no
/// privilege, and names the processes that the caller may look at.
[[nodiscard]] Measurement measureWithDiag();

} // namespace tidewell::nettop
