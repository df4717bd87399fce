#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace tidewell {

/// Splits a text at separators, keeping empty pieces; one piece without a separator.
[[nodiscard]] inline std::vector<std::string_view> splitAt(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (true) {
    const auto end = text.find(separator);
    pieces.push_back(text.substr(0, end));
    if (end == std::string_view::npos) {
      return pieces;
    }
    text.remove_prefix(end + 1);
  }
}

inline constexpr std::string_view whitespace = " \t\r\n\v\f";

/// The text without these characters at its ends.
[[nodiscard]] inline std::string_view trim(std::string_view text,
                                           std::string_view blanks = whitespace) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Parses a text that is entirely a decimal integer with an optional sign; nullopt if it is not or
/// does not fit.
template <std::signed_integral T>
[[nodiscard]] std::optional<T> parseInteger(std::string_view text) {
  if (text.starts_with('+')) {
    // from_chars accepts only the minus sign; "+-1" is not a number.
    text.remove_prefix(1);
    if (text.starts_with('-')) {
      return std::nullopt;
    }
  }
  T value = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc{} || result.ptr != end) {
    return std::nullopt;
  }
  return value;
}

} // namespace tidewell
