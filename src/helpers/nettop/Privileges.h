#pragma once

#include <initializer_list>

namespace tidewell::nettop {

/// By the numbers of the kernel.
enum class Capability {
  readAllFiles = 2, // CAP_DAC_READ_SEARCH
  netAdmin = 12,
  trace = 19, // CAP_SYS_PTRACE
  perfmon = 38,
  bpf = 39,
};

/// Makes the process deaf to whoever started it: an empty environment, no open descriptors but the
/// standard ones, no memory images, no blocked signals, and only those capabilities that measuring
/// takes, if it has them. False where that cannot be had.
[[nodiscard]] bool seclude();

/// Gives up every capability but these, for good. What the process does not have it does not get.
void keepOnly(std::initializer_list<Capability> capabilities);

} // namespace tidewell::nettop
