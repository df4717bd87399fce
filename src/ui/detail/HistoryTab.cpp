#include "ui/detail/HistoryTab.h"

#include "ui/components/TextLine.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/LatencyChart.h"
#include "ui/detail/RecentReadings.h"

#include <QVBoxLayout>

namespace tidewell {

namespace {

QString hintText() {
  return QStringLiteral("Collecting data... History will appear here after a few seconds.");
}

} // namespace

HistoryTab::HistoryTab(SamplerState& sampler, QWidget* parent)
    : QWidget(parent), m_title(makeHeading(QStringLiteral("Speed History"), this)),
      m_hint(makeHint(hintText(), this)), m_content(new QWidget(this)),
      m_chartTitle(makeSubheading(QStringLiteral("Latency Over Time"), m_content)),
      m_chart(new LatencyChart(m_content)),
      m_readingsTitle(makeSubheading(QStringLiteral("Recent Readings"), m_content)),
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

} // namespace tidewell
