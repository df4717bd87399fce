#pragma once

#include <initializer_list>

namespace tidewell::nettop {

/// The kernel's numbers of capabilities.
enum class Capability {
  readAllFiles = 2, // CAP_DAC_READ_SEARCH
  netAdmin = 12,
  trace = 19, // CAP_SYS_PTRACE
  perfmon = 38,
  bpf = 39,
};

/// Protects the process from its caller: clears the environment, closes all descriptors but the
/// standard ones, forbids core dumps, unblocks signals, and keeps only the capabilities that are
/// needed. Returns false if a standard descriptor cannot be opened.
[[nodiscard]] bool seclude();

/// Drops all capabilities but these for good. Adds none.
void keepOnly(std::initializer_list<Capability> capabilities);

} // namespace tidewell::nettop
