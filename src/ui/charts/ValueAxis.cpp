#include "ui/charts/ValueAxis.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cmath>

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

constexpr std::array<const char*, 5> suffixes = {"", "k", "M", "G", "T"};

// How many times the labels of an axis with this top are divided by a thousand.
int thousandsOf(double top) {
  int thousands = 0;
  if (top >= leastShortened) {
    for (; top >= 1000.0 && thousands + 1 < static_cast<int>(suffixes.size()); top /= 1000.0) {
      ++thousands;
    }
  }
  return thousands;
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

QString ValueAxis::label(double tick, const QStringList& units) const {
  if (tick == 0.0) {
    return QStringLiteral("0");
  }
  const int thousands = thousandsOf(m_top);
  const double unit = std::pow(1000.0, thousands);
  const double digits = -std::floor(std::log10(m_step / unit) + tolerance);
  const std::string number = fixedText(tick / unit, static_cast<int>(std::max(digits, 0.0)));
  const bool hasUnit = thousands < units.size();
  return QString::fromStdString(number) + QLatin1String(hasUnit ? "" : suffixes.at(thousands));
}

QString ValueAxis::unit(const QStringList& units) const {
  return units.value(thousandsOf(m_top), units.value(0));
}

double ValueAxis::yOf(double value, const QRectF& plot) const {
  return plot.bottom() - std::clamp(value / m_top, 0.0, 1.0) * plot.height();
}

} // namespace tidewell
