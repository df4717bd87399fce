#include "format/SteadyLabel.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <cstddef>

namespace tidewell {
namespace {

// Each is as wide as what it stands for in every font; where a font lacks it, text layout makes it.
constexpr std::string_view digitSpace = "\u2007";
constexpr std::string_view pointSpace = "\u2008";
// A fifth of the font's size, by which an M is wider than a K in the fonts of the usual desktops.
constexpr std::string_view unitSpace = "\u2009";

// Of "99.9M".
constexpr std::size_t steadyDigits = 3;

constexpr std::size_t arrowBytes = 3;

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

std::string spacesBefore(std::string_view rate) {
  const auto present = static_cast<std::size_t>(std::ranges::count_if(rate, isDigit));
  const bool isRate = present > 0 && (rate.ends_with('K') || rate.ends_with('M'));
  std::string spaces;
  if (!isRate || present > steadyDigits) {
    return spaces;
  }
  for (std::size_t count = present; count < steadyDigits; ++count) {
    spaces += digitSpace;
  }
  if (rate.find('.') == std::string_view::npos) {
    spaces += pointSpace;
  }
  if (rate.ends_with('K')) {
    spaces += unitSpace;
  }
  return spaces;
}

} // namespace

std::string steadyLabel(std::string_view label) {
  std::string steady;
  for (const std::string_view piece : splitAt(label, ' ')) {
    const std::string_view arrow = piece.substr(0, arrowBytes);
    const std::string_view rate = piece.substr(arrow.size());
    steady += steady.empty() ? "" : " ";
    steady.append(arrow).append(spacesBefore(rate)).append(rate);
  }
  return steady;
}

} // namespace tidewell
