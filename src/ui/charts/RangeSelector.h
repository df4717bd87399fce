#pragma once

#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Buttons.h"

#include <array>
#include <string_view>

namespace tidewell {

/// The spans of time that the chart's buttons name.
enum class TimeRange { fiveMin, oneHour, twentyFourHour, sevenDay };

/// All of them, in the order of the buttons.
inline constexpr std::array<TimeRange, 4> allTimeRanges = {
    TimeRange::fiveMin, TimeRange::oneHour, TimeRange::twentyFourHour, TimeRange::sevenDay};

/// The text of the button: "5m", "1h", "24h" or "7d".
[[nodiscard]] constexpr std::string_view rawValue(TimeRange range) {
  switch (range) {
  case TimeRange::fiveMin:
    return "5m";
  case TimeRange::oneHour:
    break;
  case TimeRange::twentyFourHour:
    return "24h";
  case TimeRange::sevenDay:
    return "7d";
  }
  return "1h";
}

/// Chooses one of the chart's spans of time. Main thread.
class RangeButton final : public ChoiceButton {
  Q_OBJECT

public:
  using ChoiceButton::ChoiceButton;

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
};

/// The buttons of the chart's spans of time, of which one is chosen. Main thread.
class RangeSelector final : public SpokenGroup {
  Q_OBJECT

public:
  explicit RangeSelector(QWidget* parent);

  [[nodiscard]] TimeRange selection() const { return m_selection; }

private:
  TimeRange m_selection = TimeRange::oneHour;
};

} // namespace tidewell
