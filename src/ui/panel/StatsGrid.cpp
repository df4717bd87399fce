#include "ui/panel/StatsGrid.h"

#include "format/SpeedFormatter.h"
#include "ui/components/ShownText.h"
#include "ui/components/StatCell.h"
#include "ui/tokens/TWColor.h"

#include <QGridLayout>

namespace tidewell {

namespace {

constexpr int sideInset = 12;
constexpr int gap = 1;
constexpr double cornerRadius = 8.0;
constexpr double tolerableLossPercent = 1.0;

} // namespace

StatsGrid::StatsGrid(QWidget* parent)
    : QWidget(parent), m_cells{new StatCell(this), new StatCell(this), new StatCell(this),
                               new StatCell(this)} {
  setAccessibleName(QStringLiteral("Statistics"));
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(sideInset, 0, sideInset, 0);
  grid->setSpacing(gap);
  grid->addWidget(m_cells[0], 0, 0);
  grid->addWidget(m_cells[1], 0, 1);
  grid->addWidget(m_cells[2], 1, 0);
  grid->addWidget(m_cells[3], 1, 1);
}

void StatsGrid::setFigures(std::int64_t uploadBytesPerSec, double latencyMs, double jitterMs,
                           double packetLossPercent) {
  const QString upload = QString::fromStdString(SpeedFormatter::format(uploadBytesPerSec));
  const QString milliseconds = QStringLiteral("ms");
  const bool isLossy = packetLossPercent > tolerableLossPercent;
  m_cells[0]->setFigure({QStringLiteral("Upload"), upload, QString(), TWColor::text()});
  m_cells[1]->setFigure(
      {QStringLiteral("Latency"), figureText(latencyMs, 0), milliseconds, TWColor::text()});
  m_cells[2]->setFigure(
      {QStringLiteral("Jitter"), figureText(jitterMs, 1), milliseconds, TWColor::text()});
  m_cells[3]->setFigure({QStringLiteral("Packet Loss"), figureText(packetLossPercent, 1),
                         QStringLiteral("%"), isLossy ? TWColor::yellow() : TWColor::green()});
}

void StatsGrid::resizeEvent(QResizeEvent* /*event*/) {
  layout()->activate();
  clipCells();
}

void StatsGrid::clipCells() {
  QPainterPath card;
  card.addRoundedRect(QRectF(rect()).adjusted(sideInset, 0.0, -sideInset, 0.0), cornerRadius,
                      cornerRadius);
  for (StatCell* cell : m_cells) {
    QPainterPath ground;
    ground.addRect(QRectF(cell->geometry()));
    cell->setClip(card.intersected(ground).translated(-cell->pos()));
  }
}

} // namespace tidewell
