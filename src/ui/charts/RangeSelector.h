#pragma once

#include "base/Translation.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/Buttons.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tidewell {

/// The time ranges of the bandwidth chart.
enum class TimeRange { fiveMin, oneHour, twentyFourHour, sevenDay };

/// All ranges, in the order of the buttons.
inline constexpr std::array<TimeRange, 4> allTimeRanges = {
    TimeRange::fiveMin, TimeRange::oneHour, TimeRange::twentyFourHour, TimeRange::sevenDay};

/// The text of the button in English: "5m", "1h", "24h" or "7d".
[[nodiscard]] constexpr std::string_view rawValue(TimeRange range) {
  constexpr std::array<std::string_view, 4> texts = {translatable("5m"), translatable("1h"),
                                                     translatable("24h"), translatable("7d")};
  return texts.at(static_cast<std::size_t>(range));
}

/// Selects a time range.
class RangeButton final : public ChoiceButton {
  Q_OBJECT

public:
  using ChoiceButton::ChoiceButton;

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  [[nodiscard]] QColor ground() const;
};

/// Buttons for the time ranges, one of which is selected.
class RangeSelector final : public SpokenGroup {
  Q_OBJECT

public:
  explicit RangeSelector(QWidget* parent);

  [[nodiscard]] TimeRange selection() const { return m_selection; }

private:
  TimeRange m_selection = TimeRange::oneHour;
};

} // namespace tidewell
