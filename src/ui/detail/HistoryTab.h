#pragma once

#include "base/Observers.h"
#include "sampling/SamplerState.h"

#include <QWidget>

namespace tidewell {

class LatencyChart;
class RecentReadings;
class TextLine;

/// How latency and rates have been. Main thread.
class HistoryTab final : public QWidget {
  Q_OBJECT

public:
  /// Borrows the state.
  explicit HistoryTab(SamplerState& sampler, QWidget* parent = nullptr);

private:
  void showSnapshots(const SnapshotList& snapshots);

  // Children; either the hint or the rest is shown.
  TextLine* m_hint;
  QWidget* m_content;
  LatencyChart* m_chart;
  RecentReadings* m_readings;
  Subscription m_subscription; // ended before the children go
};

} // namespace tidewell
