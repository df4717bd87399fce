#pragma once

#include "helpers/nettop/Measurement.h"

namespace tidewell::nettop {

/// Measures a second by programs in the kernel: every socket of every process, in all network
/// namespaces, those that live shorter than the second included. Needs CAP_BPF, CAP_PERFMON and
/// CAP_NET_ADMIN, which the process has given up afterwards, and control groups of version 2.
[[nodiscard]] Measurement measureWithBpf();

} // namespace tidewell::nettop
