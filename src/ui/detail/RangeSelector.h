#pragma once

#include "ui/components/SpokenGroup.h"
#include "ui/detail/TimeRange.h"

namespace tidewell {

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
