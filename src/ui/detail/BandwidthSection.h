#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/detail/TimeRange.h"

#include <QWidget>

namespace tidewell {

class BandwidthChart;
class RangeSelector;

/// The chart of the throughput under its title and its spans of time, and over its legend. The
/// chosen span changes nothing but its button. Main thread.
class BandwidthSection final : public QWidget {
  Q_OBJECT

public:
  explicit BandwidthSection(QWidget* parent);

  void setSnapshots(const SnapshotList& snapshots);
  [[nodiscard]] TimeRange timeRange() const;

private:
  // Children, made in the order in which they are read.
  QWidget* m_heading;
  RangeSelector* m_ranges;
  BandwidthChart* m_chart;
};

} // namespace tidewell
