#pragma once

namespace tidewell::nettop {

/// Whether this process counts processes as the kernel itself does: not in a container that numbers
/// its own. True where the kernel does not tell.
[[nodiscard]] bool isFirstProcessNamespace();

} // namespace tidewell::nettop
