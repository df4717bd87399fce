#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

/// The kernel's name of a process, up to 15 characters; empty if there is no such process or it may
/// not be read.
[[nodiscard]] std::string processName(std::uint32_t process);

} // namespace tidewell
