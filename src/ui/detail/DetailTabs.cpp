#include "ui/detail/DetailTabs.h"

#include "ui/charts/AxisCharts.h"
#include "ui/charts/ChartStats.h"
#include "ui/charts/RangeSelector.h"
#include "ui/components/ShownText.h"
#include "ui/components/TextLine.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/RecentReadings.h"
#include "ui/processes/ProcessListView.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace tidewell {
namespace {

constexpr int legendSpacing = 16;

QString hintText() {
  return translatedText("Collecting data... History will appear here after a few seconds.");
}

} // namespace

BandwidthSection::BandwidthSection(QWidget* parent)
    : QWidget(parent), m_heading(makeHeading(translatedText("Bandwidth Over Time"), this)),
      m_ranges(new RangeSelector(this)), m_chart(new BandwidthChart(this)) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(detailGrid::headingSpacing);

  auto* const header = new QHBoxLayout;
  header->addWidget(m_heading, 1);
  header->addWidget(m_ranges);
  column->addLayout(header);

  column->addWidget(m_chart);

  auto* const legend = new QHBoxLayout;
  legend->setSpacing(legendSpacing);
  legend->addWidget(new LegendItem(translatedText("Download"), TWColor::accent, this));
  legend->addWidget(new LegendItem(translatedText("Upload"), TWColor::cyan, this));
  legend->addStretch();
  column->addLayout(legend);
}

void BandwidthSection::setSnapshots(const SnapshotList& snapshots) {
  m_chart->setSnapshots(snapshots);
}

TimeRange BandwidthSection::timeRange() const { return m_ranges->selection(); }

ProcessesTab::ProcessesTab(TrackerState& tracker, QWidget* parent)
    : QWidget(parent), m_title(makeHeading(translatedText("Active Processes"), this)),
      m_empty(makeHint(translatedText("No active network processes detected."), this)),
      m_list(new ProcessListView(this)) {
  auto* const column = new QVBoxLayout(this);
  column->setSpacing(detailGrid::headingSpacing);
  column->addWidget(m_title);
  column->addWidget(m_empty);
  column->addWidget(m_list);
  column->addStretch();
  m_subscription = tracker.processes.subscribe(
      [this](const std::vector<ProcessUsage>& processes) { showProcesses(processes); });
}

void ProcessesTab::showProcesses(const std::vector<ProcessUsage>& processes) {
  m_list->setProcesses(processes);
  m_list->setVisible(!processes.empty());
  m_empty->setVisible(processes.empty());
}

HistoryTab::HistoryTab(SamplerState& sampler, QWidget* parent)
    : QWidget(parent), m_title(makeHeading(translatedText("Speed History"), this)),
      m_hint(makeHint(hintText(), this)), m_content(new QWidget(this)),
      m_chartTitle(makeSubheading(translatedText("Latency Over Time"), m_content)),
      m_chart(new LatencyChart(m_content)),
      m_readingsTitle(makeSubheading(translatedText("Recent Readings"), m_content)),
      m_readings(new RecentReadings(m_content)) {
  layOut();
  m_subscription = sampler.snapshots.subscribe(
      [this](const SnapshotList& snapshots) { showSnapshots(snapshots); });
}

void HistoryTab::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setSpacing(detailGrid::headingSpacing);
  column->addWidget(m_title);
  column->addWidget(m_hint);
  column->addWidget(m_content);
  column->addStretch();

  auto* const content = new QVBoxLayout(m_content);
  content->setContentsMargins(0, 0, 0, 0);
  content->setSpacing(0);
  content->addWidget(m_chartTitle);
  content->addSpacing(detailGrid::headingSpacing);
  content->addWidget(m_chart);
  content->addSpacing(detailGrid::sectionSpacing);
  content->addWidget(m_readingsTitle);
  content->addSpacing(detailGrid::headingSpacing);
  content->addWidget(m_readings);
}

void HistoryTab::showSnapshots(const SnapshotList& snapshots) {
  m_chart->setSnapshots(snapshots);
  m_readings->setSnapshots(snapshots);
  m_content->setVisible(!snapshots.empty());
  m_hint->setVisible(snapshots.empty());
}

OverviewTab::OverviewTab(DetailSources sources, QWidget* parent)
    : QWidget(parent), m_bandwidth(new BandwidthSection(this)), m_stats(new ChartStats(this)),
      m_programs(makeHeading(translatedText("Active Processes"), this)),
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
