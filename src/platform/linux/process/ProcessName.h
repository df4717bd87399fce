#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

/// The name of a process as the kernel keeps it, up to 15 characters; empty when there is no such
/// process or it may not be looked at. Any thread.
[[nodiscard]] std::string processName(std::uint32_t process);

} // namespace tidewell
