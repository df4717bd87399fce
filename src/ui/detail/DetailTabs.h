#pragma once

#include "base/Observers.h"
#include "processes/TrackerState.h"
#include "sampling/NetworkSnapshot.h"
#include "sampling/SamplerState.h"
#include "ui/charts/RangeSelector.h"
#include "ui/detail/DetailWindowView.h"

#include <QWidget>

#include <vector>

namespace tidewell {

class BandwidthChart;
class ChartStats;
class LatencyChart;
class ProcessListView;
class RangeSelector;
class RecentReadings;
class TextLine;

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

/// All programs that use the network. Main thread.
class ProcessesTab final : public QWidget {
  Q_OBJECT

public:
  /// Borrows the state.
  explicit ProcessesTab(TrackerState& tracker, QWidget* parent = nullptr);

private:
  void showProcesses(const std::vector<ProcessUsage>& processes);

  // Children, in reading order; either the hint or the list is shown.
  TextLine* m_title;
  TextLine* m_empty;
  ProcessListView* m_list;
  Subscription m_subscription; // ended before the children go
};

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

/// The chart, its figures and the busiest programs. Main thread.
class OverviewTab final : public QWidget {
  Q_OBJECT

public:
  /// How many programs are shown.
  static constexpr int previewRows = 4;

  explicit OverviewTab(DetailSources sources, QWidget* parent = nullptr);

  [[nodiscard]] TimeRange timeRange() const;

private:
  void layOut();
  void observe(DetailSources sources);

  // Children, in reading order.
  BandwidthSection* m_bandwidth;
  ChartStats* m_stats;
  TextLine* m_programs;
  ProcessListView* m_preview;
  // Ended before the children go.
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
