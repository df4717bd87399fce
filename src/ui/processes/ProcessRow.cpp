#include "ui/processes/ProcessRow.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/processes/ProcessTexts.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

#include <algorithm>

namespace tidewell {
namespace {

constexpr int headerPadding = 8;
constexpr double letterSpacing = 1.0;
constexpr int smallestTitleSize = 8;

TextStyle titleStyle(Qt::Alignment alignment) {
  return {.font = withLetterSpacing(TWFont::label(), letterSpacing),
          .color = TWColor::textTertiary,
          .alignment = alignment,
          .smallestPixelSize = smallestTitleSize};
}

QString titleOf(const ProcessColumn& column) { return translatedText(column.title); }

constexpr int edgePadding = 10;
constexpr int lineThickness = 1;
constexpr int squareEdge = 24;
constexpr double squareRadius = 6.0;
constexpr double squareOpacity = 0.8;
constexpr int squareSpacing = 10;
constexpr int barHeight = 4;
constexpr double barRadius = 2.0;
constexpr double leastBar = 4.0;

TextStyle nameStyle() { return {TWFont::body(), TWColor::text}; }
TextStyle identifierStyle() { return {TWFont::caption(), TWColor::textTertiary}; }

TextStyle initialStyle() {
  return {.font = TWFont::standard(12, QFont::DemiBold),
          .color = Qt::white,
          .alignment = Qt::AlignHCenter,
          .smallestPixelSize = 6};
}

TextStyle figureStyle() {
  return {.font = TWFont::monoSmall(),
          .color = TWColor::textSecondary,
          .alignment = Qt::AlignRight,
          .smallestPixelSize = 9};
}

int contentHeight() {
  return std::max(squareEdge, lineHeight(nameStyle()) + lineHeight(identifierStyle()));
}

// The box of a line of this style, centred vertically.
QRect centred(const QRect& column, const TextStyle& style) {
  const int height = lineHeight(style);
  return {column.left(), edgePadding + (contentHeight() - height) / 2, column.width(), height};
}

} // namespace

QRect processColumnBox(std::size_t column, const QRect& row) {
  int right = row.right() + 1;
  for (std::size_t index = processColumns.size() - 1; index > column; --index) {
    right -= processColumns.at(index).width + processColumnGap;
  }
  const int fixed = processColumns.at(column).width;
  const int width = fixed > 0 ? fixed : std::max(0, right - row.left());
  return {right - width, row.top(), width, row.height()};
}

const QColor& processBarColor(std::size_t row) {
  static const std::array<const QColor*, 6> barColors = {&TWColor::accent, &TWColor::green,
                                                         &TWColor::purple, &TWColor::cyan,
                                                         &TWColor::yellow, &TWColor::red};
  return *barColors.at(row % barColors.size());
}

ProcessListHeader::ProcessListHeader(QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  QStringList titles;
  for (const ProcessColumn& column : processColumns) {
    titles << titleOf(column);
  }
  setSpoken(titles.join(QStringLiteral(", ")));
}

QSize ProcessListHeader::sizeHint() const {
  return {0, lineHeight(titleStyle(Qt::AlignLeft)) + 2 * headerPadding + lineThickness};
}

void ProcessListHeader::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), TWColor::surface);
  fillLine(painter, QRect(0, height() - lineThickness, width(), lineThickness),
           TWColor::borderSubtle);
  for (std::size_t column = 0; column < processColumns.size(); ++column) {
    headerCell(painter, column);
  }
}

QString ProcessListHeader::cutText() const {
  for (std::size_t column = 0; column < processColumns.size(); ++column) {
    const ProcessColumn& definition = processColumns.at(column);
    if (!ifCut(titleOf(definition), titleStyle(definition.alignment),
               processColumnBox(column, rect()).width())
             .isEmpty()) {
      return accessibleName();
    }
  }
  return {};
}

void ProcessListHeader::headerCell(QPainter& painter, std::size_t column) const {
  const ProcessColumn& definition = processColumns.at(column);
  drawLine(painter, processColumnBox(column, rect()).adjusted(0, headerPadding, 0, 0),
           titleOf(definition), titleStyle(definition.alignment));
}

ProcessRow::ProcessRow(std::size_t index, QWidget* parent)
    : PaintedWidget(QAccessible::ListItem, parent), m_color(processBarColor(index)) {
  setUsage({});
}

void ProcessRow::setUsage(const ProcessUsage& usage) {
  if (usage == m_usage && !m_figures[0].isEmpty()) {
    return;
  }
  m_usage = usage;
  m_name = shownText(usage.name);
  m_initial = initialOf(m_name);
  m_figures = figuresOf(usage);
  setSpoken(spokenUsage(usage));
  contentChanged();
}

QSize ProcessRow::sizeHint() const {
  return {0, contentHeight() + 2 * edgePadding + lineThickness};
}

QRect ProcessRow::track() const {
  const QRect column = processColumnBox(processColumns.size() - 1, rect());
  return {column.left(), edgePadding + (contentHeight() - barHeight) / 2, column.width(),
          barHeight};
}

QRectF ProcessRow::bar() const {
  QRectF filled = track();
  filled.setWidth(std::max(leastBar, filled.width() * shareOf(m_usage)));
  return filled;
}

QRect ProcessRow::nameBox() const {
  const int lines = lineHeight(nameStyle()) + lineHeight(identifierStyle());
  const QRect column = processColumnBox(0, rect());
  return {column.left() + squareEdge + squareSpacing, edgePadding + (contentHeight() - lines) / 2,
          std::max(0, column.width() - squareEdge - squareSpacing), lines};
}

void ProcessRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  fillLine(painter, QRect(0, height() - lineThickness, width(), lineThickness),
           TWColor::borderSubtle);
  painter.setRenderHint(QPainter::Antialiasing);
  paintProgram(painter);
  paintFigures(painter);
  paintBar(painter);
}

void ProcessRow::paintProgram(QPainter& painter) const {
  const QRect square(0, edgePadding + (contentHeight() - squareEdge) / 2, squareEdge, squareEdge);
  fillRounded(painter, square, squareRadius, withOpacity(m_color, squareOpacity));
  drawLine(painter, centred(square, initialStyle()), m_initial, initialStyle());

  const QRect box = nameBox();
  drawLine(painter, box, m_name, nameStyle());
  drawLine(painter, box.adjusted(0, lineHeight(nameStyle()), 0, 0), identifierText(m_usage),
           identifierStyle());
}

void ProcessRow::paintFigures(QPainter& painter) const {
  for (std::size_t index = 0; index < m_figures.size(); ++index) {
    drawLine(painter, centred(processColumnBox(index + 1, rect()), figureStyle()),
             m_figures.at(index), figureStyle());
  }
}

void ProcessRow::paintBar(QPainter& painter) const {
  fillRounded(painter, track(), barRadius, TWColor::surface3);
  fillRounded(painter, bar(), barRadius, m_color);
}

QString ProcessRow::cutText() const {
  bool isCut = FittedText(m_name, nameStyle(), nameBox().width()).isCut;
  for (std::size_t index = 0; index < m_figures.size(); ++index) {
    const QRect column = processColumnBox(index + 1, rect());
    isCut = isCut || FittedText(m_figures.at(index), figureStyle(), column.width()).isCut;
  }
  return isCut ? accessibleName() : QString();
}

} // namespace tidewell
