#include "ui/detail/BandwidthSection.h"

#include "ui/components/TextLine.h"
#include "ui/detail/BandwidthChart.h"
#include "ui/detail/DetailStyles.h"
#include "ui/detail/LegendItem.h"
#include "ui/detail/RangeSelector.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tidewell {

namespace {

constexpr int legendSpacing = 16;

} // namespace

BandwidthSection::BandwidthSection(QWidget* parent)
    : QWidget(parent), m_heading(makeHeading(QStringLiteral("Bandwidth Over Time"), this)),
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
  legend->addWidget(new LegendItem(QStringLiteral("Download"), TWColor::accent(), this));
  legend->addWidget(new LegendItem(QStringLiteral("Upload"), TWColor::cyan(), this));
  legend->addStretch();
  column->addLayout(legend);
}

void BandwidthSection::setSnapshots(const SnapshotList& snapshots) {
  m_chart->setSnapshots(snapshots);
}

TimeRange BandwidthSection::timeRange() const { return m_ranges->selection(); }

} // namespace tidewell
