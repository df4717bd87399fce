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
  void layOut();
  void showSnapshots(const SnapshotList& snapshots);

  // Children, in reading order; either the hint or the content is shown.
  TextLine* m_title;
  TextLine* m_hint;
  QWidget* m_content;
  TextLine* m_chartTitle;
  LatencyChart* m_chart;
  TextLine* m_readingsTitle;
  RecentReadings* m_readings;
  Subscription m_subscription; // ended before the children go
};

} // namespace tidewell
