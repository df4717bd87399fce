#pragma once

#include <cstddef>
#include <string_view>

namespace tidewell::fuzz {

/// Whether a text of the per-process tool can hold sums that overflow. They end the program, as
/// they are meant to, and the helper never writes them.
inline bool maySumOverflow(std::string_view text) {
  std::size_t digits = 0;
  for (const char character : text) {
    digits = character >= '0' && character <= '9' ? digits + 1 : 0;
    if (digits > 15) {
      return true;
    }
  }
  return false;
}

} // namespace tidewell::fuzz
