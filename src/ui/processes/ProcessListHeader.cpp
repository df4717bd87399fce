#include "ui/processes/ProcessListHeader.h"

#include "ui/components/FittedText.h"
#include "ui/processes/ProcessColumns.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

namespace tidewell {

namespace {

constexpr int edgePadding = 8;
constexpr int lineThickness = 1;
constexpr double letterSpacing = 1.0;

TextStyle titleStyle(Qt::Alignment alignment) {
  TextStyle style{withLetterSpacing(TWFont::label(), letterSpacing), TWColor::textTertiary()};
  style.alignment = alignment;
  return style;
}

QString titleOf(const ProcessColumn& column) { return QString::fromLatin1(column.title); }

} // namespace

ProcessListHeader::ProcessListHeader(QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  QStringList titles;
  for (const ProcessColumn& column : processColumns) {
    titles << titleOf(column);
  }
  setSpoken(titles.join(QStringLiteral(", ")));
}

QSize ProcessListHeader::sizeHint() const {
  return {0, lineHeight(titleStyle(Qt::AlignLeft)) + 2 * edgePadding + lineThickness};
}

void ProcessListHeader::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), TWColor::surface());
  painter.fillRect(QRect(0, height() - lineThickness, width(), lineThickness),
                   TWColor::borderSubtle());
  for (std::size_t column = 0; column < processColumns.size(); ++column) {
    headerCell(painter, column);
  }
}

void ProcessListHeader::headerCell(QPainter& painter, std::size_t column) const {
  const ProcessColumn& definition = processColumns.at(column);
  drawLine(painter, processColumnBox(column, rect()).adjusted(0, edgePadding, 0, 0),
           titleOf(definition), titleStyle(definition.alignment));
}

} // namespace tidewell
