#include "base/Checked.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace tidewell {
namespace {

// The first doubles outside the range of a signed 64-bit integer.
constexpr double aboveRange = 9223372036854775808.0;
constexpr double lowest = -9223372036854775808.0;

} // namespace

void fatal(std::string_view reason) {
  std::string line = "tidewell: ";
  line.append(reason).push_back('\n');
  // Not buffered: the process may be about to lose its buffers.
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
  std::abort();
}

std::int64_t checkedAdd(std::int64_t left, std::int64_t right) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(left, right, &sum)) {
    fatal("arithmetic overflow in an addition");
  }
  return sum;
}

std::int64_t checkedSubtract(std::int64_t left, std::int64_t right) {
  std::int64_t difference = 0;
  if (__builtin_sub_overflow(left, right, &difference)) {
    fatal("arithmetic overflow in a subtraction");
  }
  return difference;
}

std::int64_t checkedTruncate(double value) {
  if (!std::isfinite(value) || value >= aboveRange || value < lowest) {
    fatal("a number does not fit a 64-bit integer");
  }
  return static_cast<std::int64_t>(value);
}

} // namespace tidewell
