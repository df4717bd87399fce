#pragma once

#include <cstdint>
#include <string_view>

namespace tidewell {

/// Writes `reason` as one line to standard error and aborts.
[[noreturn]] void fatal(std::string_view reason);

/// The sum; aborts with a message if it does not fit.
[[nodiscard]] std::int64_t checkedAdd(std::int64_t left, std::int64_t right);

/// The difference; aborts with a message if it does not fit.
[[nodiscard]] std::int64_t checkedSubtract(std::int64_t left, std::int64_t right);

/// The value truncated toward zero; aborts with a message if it is not finite or does not fit.
[[nodiscard]] std::int64_t checkedTruncate(double value);

} // namespace tidewell
