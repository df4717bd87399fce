#include "base/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace tidewell {

std::string fixedText(double value, int decimals) {
  // The longest double has 309 digits before the separator.
  std::array<char, 512> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::fixed, decimals);
  return {buffer.data(), result.ptr};
}

std::optional<double> parseDouble(std::string_view text) {
  if (text.starts_with('+')) {
    // from_chars accepts only the minus sign; "+-1" is not a number.
    text.remove_prefix(1);
    if (text.starts_with('-')) {
      return std::nullopt;
    }
  }
  double value = 0.0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, std::chars_format::general);
  if (result.ec != std::errc{} || result.ptr != end || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

} // namespace tidewell
