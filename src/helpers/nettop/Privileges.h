#pragma once

#include <initializer_list>

namespace tidewell::nettop {

enum class Capability { netAdmin = 12, perfmon = 38, bpf = 39 };

/// Makes the process deaf to whoever started it: an empty environment, no open descriptors but the
/// standard ones, no memory images, no blocked signals, and only those capabilities that measuring
/// takes, if it has them. False where that cannot be had.
[[nodiscard]] bool seclude();

/// Gives up every capability but these, for good. What the process does not have it does not get.
void keepOnly(std::initializer_list<Capability> capabilities);

} // namespace tidewell::nettop
