#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The value with exactly `decimals` digits after a ".", exact halves rounded to the even digit,
/// whatever the locale.
[[nodiscard]] std::string fixedText(double value, int decimals);

/// The value of a text that is a finite decimal floating-point number from end to end, with an
/// optional sign and exponent; none otherwise. The separator is ".", whatever the locale.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text);

} // namespace tidewell
