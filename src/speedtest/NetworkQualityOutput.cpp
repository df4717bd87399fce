#include "speedtest/NetworkQualityOutput.h"

#include "base/DisplayText.h"
#include "base/NumberText.h"
#include "base/TextPieces.h"

#include <array>
#include <optional>
#include <string>
#include <utility>

namespace tidewell {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view digitsAndDots = "0123456789.";

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') {
      letter = static_cast<char>(letter - 'A' + 'a');
    }
  }
  return lower;
}

/// The value in megabits of a unit at the start of the text; nullopt without one.
std::optional<double> leadingUnit(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, double>, 3> units = {
      {{"Mbps", 1.0}, {"Gbps", 1e3}, {"Kbps", 1e-3}}};
  for (const auto& [name, megabits] : units) {
    if (text.starts_with(name)) {
      return megabits;
    }
  }
  return std::nullopt;
}

/// The first number with a unit after it, in megabits per second; 0.0 without one.
double speedOf(std::string_view line) {
  while (true) {
    const auto begin = line.find_first_of(digitsAndDots);
    if (begin == std::string_view::npos) {
      return 0.0;
    }
    line.remove_prefix(begin);
    const auto number = line.substr(0, line.find_first_not_of(digitsAndDots));
    line.remove_prefix(number.size());
    const auto unit = line.find_first_not_of(whitespace);
    if (unit == std::string_view::npos) {
      return 0.0;
    }
    if (const auto megabits = leadingUnit(line.substr(unit))) {
      const double value = parseDouble(number).value_or(0.0);
      return *megabits < 1.0 ? value / 1e3 : value * *megabits;
    }
  }
}

/// The first run of digits; 0 without one, or if it does not fit.
std::int64_t firstWholeNumber(std::string_view line) {
  const auto begin = line.find_first_of(digits);
  if (begin == std::string_view::npos) {
    return 0;
  }
  line.remove_prefix(begin);
  return parseInteger<std::int64_t>(line.substr(0, line.find_first_not_of(digits))).value_or(0);
}

bool containsAny(std::string_view text, std::string_view first, std::string_view second) {
  return text.find(first) != std::string_view::npos || text.find(second) != std::string_view::npos;
}

} // namespace

SpeedTestResult parseNetworkQualityOutput(std::string_view output, double now) {
  SpeedTestResult result;
  result.timestamp = now;
  for (const std::string_view line : splitAt(output, '\n')) {
    const std::string lower = lowerCase(line);
    if (containsAny(lower, "downlink capacity", "download capacity")) {
      result.downloadMbps = speedOf(line);
    } else if (containsAny(lower, "uplink capacity", "upload capacity")) {
      result.uploadMbps = speedOf(line);
    } else if (lower.find("responsiveness") != std::string::npos) {
      result.responsiveness = firstWholeNumber(line);
    }
  }
  return result;
}

std::string networkQualityFailure(std::string_view output) {
  constexpr std::string_view mark = "Failure: ";
  std::string_view reason;
  for (const std::string_view line : splitAt(output, '\n')) {
    if (line.starts_with(mark)) {
      reason = line.substr(mark.size());
    }
  }
  return displayText(reason.substr(0, longestFailure));
}

} // namespace tidewell
