#include "ui/panel/PanelSections.h"

#include "base/Translation.h"
#include "connectivity/ConnectionInfo.h"
#include "format/SpeedFormatter.h"
#include "ui/components/ConnectionText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/components/StatCell.h"
#include "ui/components/StatusBadge.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QGridLayout>
#include <QPainterPath>
#include <QVBoxLayout>

namespace tidewell {
namespace {

constexpr int sideInset = 12;
constexpr int gap = 1;
constexpr double cornerRadius = 8.0;
constexpr double tolerableLossPercent = 1.0;

constexpr int topPadding = 24;
constexpr int bottomPadding = 16;
constexpr int sidePadding = 20;
constexpr int titleSpacing = 4;
constexpr int badgeSpacing = 10;

TextStyle centred(const QFont& font, const QColor& color) {
  return {.font = font, .color = color, .alignment = Qt::AlignHCenter};
}

TextStyle titleStyle() {
  return centred(withLetterSpacing(TWFont::label(), 1.5), TWColor::textTertiary);
}

TextStyle rateStyle() {
  TextStyle style = centred(TWFont::monospaced(36, QFont::Bold), TWColor::text);
  style.smallestPixelSize = 20;
  return style;
}

TextStyle megabitsStyle() {
  TextStyle style = centred(TWFont::standard(13, QFont::Normal), TWColor::textSecondary);
  style.isTabular = true;
  return style;
}

} // namespace

ConnectionSection::ConnectionSection(QWidget* parent) : QWidget(parent) {
  setAccessibleName(translatedText("Connection"));
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(20, 12, 20, 12);
  column->setSpacing(0);
  constexpr std::array<const char*, 5> keys = {translatable("Network"), translatable("Interface"),
                                               translatable("Local IP"), translatable("Public IP"),
                                               translatable("DNS")};
  for (std::size_t index = 0; index < keys.size(); ++index) {
    m_rows.at(index) = new ValueRow(translatedText(keys.at(index)), {.padding = 6}, this);
    column->addWidget(m_rows.at(index));
  }
}

void ConnectionSection::setInfo(const ConnectionInfo& info) {
  m_rows[0]->setValue(networkNameText(info), TWColor::text);
  m_rows[1]->setValue(interfaceNameText(info), TWColor::text);
  m_rows[2]->setValue(shownText(info.ipAddress), TWColor::text);
  m_rows[3]->setValue(shownText(info.publicIP), TWColor::text);
  m_rows[4]->setValue(shownText(info.dns), TWColor::text);
}

StatsGrid::StatsGrid(QWidget* parent)
    : QWidget(parent), m_cells{new StatCell(this), new StatCell(this), new StatCell(this),
                               new StatCell(this)} {
  setAccessibleName(translatedText("Statistics"));
  for (StatCell* cell : m_cells) {
    cell->leaveGround();
  }
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
  const QString upload = rateText(uploadBytesPerSec);
  const QString milliseconds = QStringLiteral("ms");
  const bool isLossy = packetLossPercent > tolerableLossPercent;
  m_cells[0]->setFigure({translatedText("Upload"), upload, QString(), TWColor::text});
  m_cells[1]->setFigure(
      {translatedText("Latency"), figureText(latencyMs, 0), milliseconds, TWColor::text});
  m_cells[2]->setFigure(
      {translatedText("Jitter"), figureText(jitterMs, 1), milliseconds, TWColor::text});
  m_cells[3]->setFigure({translatedText("Packet Loss"), figureText(packetLossPercent, 1),
                         QStringLiteral("%"), isLossy ? TWColor::yellow : TWColor::green});
}

void StatsGrid::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  const DevicePixels grid(painter);
  const QRectF card = grid.rect(QRectF(rect()).adjusted(sideInset, 0.0, -sideInset, 0.0));
  const QRect last = m_cells.back()->geometry();
  QPainterPath gaps;
  gaps.setFillRule(Qt::WindingFill);
  gaps.addRect(QRectF(grid.x(last.left() - gap), 0.0, grid.thickness(gap), height()));
  gaps.addRect(QRectF(0.0, grid.y(last.top() - gap), width(), grid.thickness(gap)));
  QPainterPath ground;
  ground.addRoundedRect(card, cornerRadius, cornerRadius);
  painter.fillPath(ground.subtracted(gaps), TWColor::surface2);
}

ThroughputHero::ThroughputHero(const ViewTime& time, QWidget* parent)
    : QWidget(parent), m_title(new TextLine(titleStyle(), this)),
      m_rate(new TextLine(rateStyle(), this)), m_megabits(new TextLine(megabitsStyle(), this)),
      m_badge(new StatusBadge(time.now, this)) {
  setAccessibleName(translatedText("Throughput"));
  const QString title = translatedText("Current throughput");
  m_title->setText(title.toUpper(), title);
  layOut();
}

void ThroughputHero::layOut() {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(sidePadding, topPadding, sidePadding, bottomPadding);
  column->setSpacing(0);
  column->addWidget(m_title);
  column->addSpacing(titleSpacing);
  column->addWidget(m_rate);
  column->addWidget(m_megabits);
  column->addSpacing(badgeSpacing);
  column->addWidget(m_badge, 0, Qt::AlignHCenter);
}

void ThroughputHero::setDownload(std::int64_t bytesPerSec) {
  const QString rate = rateText(bytesPerSec);
  const QString megabits =
      QString::fromStdString(SpeedFormatter::formatMbps(bytesPerSec)) + QStringLiteral(" Mbps");
  m_rate->setText(rate, translatedText("Download %1").arg(rate));
  m_megabits->setText(megabits, translatedText("Download %1").arg(megabits));
}

void ThroughputHero::setStatus(NetworkStatus status) { m_badge->setStatus(status); }

} // namespace tidewell
