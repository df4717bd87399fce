#include "ui/charts/ValueAxis.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tidewell {
namespace {

constexpr double mostSteps = 5.0;
// Larger labels are written in thousands, millions and so on.
constexpr double leastShortened = 10'000.0;
// Prevents rounding errors from adding a step.
constexpr double tolerance = 1e-9;

double roundStep(double atLeast) {
  const double power = std::pow(10.0, std::floor(std::log10(atLeast)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= atLeast * (1.0 - tolerance)) {
      return factor * power;
    }
  }
  return 10.0 * power;
}

// The divisor of an axis's labels, and its suffix.
std::pair<double, const char*> unitOf(double top) {
  constexpr std::array<std::pair<double, const char*>, 4> units = {
      {{1e12, "T"}, {1e9, "G"}, {1e6, "M"}, {1e3, "k"}}};
  if (top >= leastShortened) {
    for (const auto& unit : units) {
      if (top >= unit.first) {
        return unit;
      }
    }
  }
  return {1.0, ""};
}

} // namespace

ValueAxis::ValueAxis(double largest, double leastTop)
    : m_step(roundStep(std::max(largest, leastTop) / mostSteps)) {
  const double steps = std::ceil(std::max(largest, leastTop) / m_step - tolerance);
  m_top = steps * m_step;
  for (int index = 0; index <= static_cast<int>(steps); ++index) {
    m_ticks.push_back(index * m_step);
  }
}

QString ValueAxis::label(double tick) const {
  if (tick == 0.0) {
    return QStringLiteral("0");
  }
  const auto [unit, suffix] = unitOf(m_top);
  const double digits = -std::floor(std::log10(m_step / unit) + tolerance);
  const std::string number = fixedText(tick / unit, static_cast<int>(std::max(digits, 0.0)));
  return QString::fromStdString(number) + QLatin1String(suffix);
}

double ValueAxis::yOf(double value, const QRectF& plot) const {
  return plot.bottom() - std::clamp(value / m_top, 0.0, 1.0) * plot.height();
}

} // namespace tidewell
