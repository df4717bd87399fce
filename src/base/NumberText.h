#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The value with exactly `decimals` digits after a "."; exact halves round to even. Ignores the
/// locale.
[[nodiscard]] std::string fixedText(double value, int decimals);

/// Parses a text that is entirely a finite decimal floating-point number with an optional sign and
/// exponent; nullopt otherwise. The separator is ".", whatever the locale.
[[nodiscard]] std::optional<double> parseDouble(std::string_view text);

} // namespace tidewell
