#include "ui/charts/ChartStats.h"

#include "base/Checked.h"
#include "base/Translation.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/components/StatCell.h"
#include "ui/tokens/TWColor.h"

#include <QHBoxLayout>

namespace tidewell {
namespace {

constexpr int spacing = 12;
constexpr double radius = 8.0;

StatFigure chartStatCard(const char* label, const QString& value) {
  return {QString::fromUtf8(label), value, {}, TWColor::text};
}

} // namespace

ChartStats::ChartStats(QWidget* parent)
    : SpokenGroup(QAccessible::Grouping, translatedText("Statistics"), parent),
      m_cards{new StatCell(this), new StatCell(this), new StatCell(this), new StatCell(this)} {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(spacing);
  for (StatCell* card : m_cards) {
    card->leaveGround();
    row->addWidget(card, 1);
  }
}

void ChartStats::setCurrent(std::int64_t downloadBytesPerSec) {
  m_cards[0]->setFigure(chartStatCard(translated("Current"), rateText(downloadBytesPerSec)));
}

void ChartStats::setSnapshots(const SnapshotList& snapshots) {
  const std::int64_t average = checkedTruncate(averageDownloadBytes(snapshots));
  m_cards[1]->setFigure(chartStatCard(translated("Average"), rateText(average)));
  m_cards[2]->setFigure(chartStatCard(translated("Peak"), rateText(peakDownloadBytes(snapshots))));
  m_cards[3]->setFigure(
      chartStatCard(translated("Total"), QString::fromStdString(totalTransferred(snapshots))));
}

void ChartStats::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  for (const StatCell* card : m_cards) {
    fillRounded(painter, card->geometry(), radius, TWColor::surface2);
  }
}

} // namespace tidewell
