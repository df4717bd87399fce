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

/// The bandwidth chart with its title, time ranges and legend. The selected range changes only its
/// button.
class BandwidthSection final : public QWidget {
  Q_OBJECT

public:
  explicit BandwidthSection(QWidget* parent);

  void setSnapshots(const SnapshotList& snapshots);
  [[nodiscard]] TimeRange timeRange() const;

private:
  // Children, in reading order.
  QWidget* m_heading;
  RangeSelector* m_ranges;
  BandwidthChart* m_chart;
};

/// All processes that use the network.
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
  Subscription m_subscription; // destroyed before the children
};

/// The recent latency and rates.
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
  Subscription m_subscription; // destroyed before the children
};

/// The bandwidth chart, its figures and the busiest processes.
class OverviewTab final : public QWidget {
  Q_OBJECT

public:
  /// The number of processes shown.
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
  // Destroyed before the children.
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
