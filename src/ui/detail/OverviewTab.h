#pragma once

#include "base/Observers.h"
#include "ui/detail/DetailSources.h"
#include "ui/detail/TimeRange.h"

#include <QWidget>

#include <vector>

namespace tidewell {

class BandwidthSection;
class ChartStats;
class ProcessListView;
class TextLine;

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
