#include "ui/detail/OverviewTab.h"

#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "ui/components/TextLine.h"
#include "ui/detail/BandwidthSection.h"
#include "ui/detail/ChartStats.h"
#include "ui/detail/DetailStyles.h"
#include "ui/processes/ProcessListView.h"

#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {

OverviewTab::OverviewTab(DetailSources sources, QWidget* parent)
    : QWidget(parent), m_bandwidth(new BandwidthSection(this)), m_stats(new ChartStats(this)),
      m_programs(makeHeading(QStringLiteral("Active Processes"), this)),
      m_preview(new ProcessListView(this)) {
  layOut();
  observe(sources);
}

TimeRange OverviewTab::timeRange() const { return m_bandwidth->timeRange(); }

void OverviewTab::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setSpacing(0);
  column->addWidget(m_bandwidth);
  column->addSpacing(detailGrid::sectionSpacing);
  column->addWidget(m_stats);
  column->addSpacing(detailGrid::sectionSpacing);
  column->addWidget(m_programs);
  column->addSpacing(detailGrid::headingSpacing);
  column->addWidget(m_preview);
  column->addStretch();
}

void OverviewTab::observe(DetailSources sources) {
  m_subscriptions.push_back(sources.sampler.currentDownloadBytesPerSec.subscribe(
      [this](std::int64_t rate) { m_stats->setCurrent(rate); }));
  m_subscriptions.push_back(
      sources.sampler.snapshots.subscribe([this](const SnapshotList& snapshots) {
        m_bandwidth->setSnapshots(snapshots);
        m_stats->setSnapshots(snapshots);
      }));
  m_subscriptions.push_back(
      sources.tracker.processes.subscribe([this](const std::vector<ProcessUsage>& processes) {
        const auto count = std::min<std::ptrdiff_t>(previewRows, std::ssize(processes));
        m_preview->setProcesses({processes.begin(), processes.begin() + count});
      }));
}

} // namespace tidewell
