#include "ui/detail/RecentReadings.h"

#include "ui/components/FittedText.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>
#include <QVBoxLayout>

namespace tidewell {
namespace {

constexpr int edgePadding = 5;
constexpr int columnGap = 16;
constexpr std::array<int, 4> columnWidths = {70, 100, 100, 100};

TextStyle columnStyle(std::size_t column) {
  const std::array<const QColor*, 4> colors = {&TWColor::textTertiary, &TWColor::accent,
                                               &TWColor::cyan, &TWColor::textSecondary};
  return {.font = TWFont::monoSmall(), .color = *colors.at(column), .smallestPixelSize = 8};
}

} // namespace

ReadingRow::ReadingRow(QWidget* parent) : PaintedWidget(QAccessible::ListItem, parent) {}

void ReadingRow::setSnapshot(const NetworkSnapshot& snapshot) {
  const std::array<QString, 4> texts = {
      timeText(snapshot.timestamp()), rateText(snapshot.downloadBytesPerSec()),
      rateText(snapshot.uploadBytesPerSec()),
      figureText(snapshot.latencyMs(), 0) + QStringLiteral(" ms")};
  if (texts == m_texts) {
    return;
  }
  m_texts = texts;
  setSpoken(translatedText("%1, download %2, upload %3, latency %4")
                .arg(texts[0], texts[1], texts[2], texts[3]));
  update();
}

QSize ReadingRow::sizeHint() const { return {0, lineHeight(columnStyle(0)) + 2 * edgePadding}; }

void ReadingRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  int left = 0;
  for (std::size_t column = 0; column < columnWidths.size(); ++column) {
    const int columnWidth = columnWidths.at(column);
    drawLine(painter, QRect(left, edgePadding, columnWidth, height() - 2 * edgePadding),
             m_texts.at(column), columnStyle(column));
    left += columnWidth + columnGap;
  }
}

RecentReadings::RecentReadings(QWidget* parent)
    : SpokenGroup(QAccessible::List, translatedText("Recent Readings"), parent) {
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  for (ReadingRow*& row : m_rows) {
    row = new ReadingRow(this);
    column->addWidget(row);
  }
}

void RecentReadings::setSnapshots(const SnapshotList& snapshots) {
  auto snapshot = snapshots.rbegin();
  for (ReadingRow* row : m_rows) {
    row->setVisible(snapshot != snapshots.rend());
    if (snapshot != snapshots.rend()) {
      row->setSnapshot(**snapshot);
      ++snapshot;
    }
  }
}

} // namespace tidewell
