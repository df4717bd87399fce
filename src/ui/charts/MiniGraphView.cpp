#include "ui/charts/MiniGraphView.h"

#include "ui/charts/Curves.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

constexpr int chartHeight = 60;
constexpr double chartRadius = 6.0;
constexpr int headerSpacing = 8;
// Keeps the curves clear of the rounded corners.
constexpr double plotInset = 5.0;
constexpr double areaOpacity = 0.3;
constexpr double downloadWidth = 2.0;
constexpr double uploadWidth = 1.5;
constexpr double dash = 3.0;
constexpr int tagSidePadding = 8;
constexpr int tagEdgePadding = 2;
constexpr double tagRadius = 4.0;

QString titleText() { return translatedText("Bandwidth (last 5 min)"); }
QString tagText() { return translatedText("Live"); }

TextStyle titleStyle() { return {TWFont::standard(12, QFont::Medium), TWColor::textSecondary}; }

TextStyle tagStyle() { return {TWFont::caption(), TWColor::textTertiary}; }

int headerHeight() { return lineHeight(tagStyle()) + 2 * tagEdgePadding; }

QPen curvePen(const QColor& color, double width) {
  // Round joins cost twice as much and look the same at this width.
  return {color, width, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin};
}

void paintPoint(QPainter& painter, QPointF centre, const QColor& color, double radius) {
  fillDisc(painter, centre, radius, color);
}

} // namespace

MiniGraphView::MiniGraphView(QWidget* parent) : PaintedWidget(QAccessible::Chart, parent) {
  setSnapshots({});
}

void MiniGraphView::setSnapshots(const SnapshotList& snapshots) {
  m_snapshots = snapshots;
  const double top = std::max(leastMegabits, topOfScale(snapshots));
  setSpoken(titleText(),
            withScale(graphSummary(snapshots), figureText(top, 1) + QStringLiteral(" Mbps")));
  update(chart());
}

QSize MiniGraphView::sizeHint() const { return {0, headerHeight() + headerSpacing + chartHeight}; }

QRect MiniGraphView::chart() const {
  return {0, headerHeight() + headerSpacing, width(), chartHeight};
}

void MiniGraphView::paintEvent(QPaintEvent* event) {
  SmoothPainter painter(this);
  if (!chart().contains(event->rect())) {
    paintHeader(painter);
  }
  fillRounded(painter, chart(), chartRadius, TWColor::surface2);
  if (!m_snapshots.empty()) {
    paintChart(painter);
  }
}

void MiniGraphView::paintHeader(QPainter& painter) const {
  const double tagWidth = std::ceil(lineWidth(tagText(), tagStyle())) + 2 * tagSidePadding;
  const QRectF tag(width() - tagWidth, 0.0, tagWidth, headerHeight());
  fillRounded(painter, tag, tagRadius, TWColor::surface2);
  drawLine(painter, tag.adjusted(tagSidePadding, tagEdgePadding, -tagSidePadding, 0.0), tagText(),
           tagStyle());
  const int titleTop = (headerHeight() - lineHeight(titleStyle())) / 2;
  drawLine(painter, QRectF(0.0, titleTop, titleWidth(), headerHeight()), titleText(), titleStyle());
}

double MiniGraphView::titleWidth() const {
  return width() - std::ceil(lineWidth(tagText(), tagStyle())) - 2 * tagSidePadding;
}

QString MiniGraphView::cutText() const { return ifCut(titleText(), titleStyle(), titleWidth()); }

void MiniGraphView::paintChart(QPainter& painter) const {
  const QRectF plot = QRectF(chart()).adjusted(plotInset, plotInset, -plotInset, -plotInset);
  const GraphCurves curves(m_snapshots, plot);
  if (m_snapshots.size() == 1) {
    paintPoint(painter, curves.download.first(), TWColor::green, 1.5 * downloadWidth);
    paintPoint(painter, curves.upload.first(), TWColor::cyan, uploadWidth);
    return;
  }
  fillBelow(painter, curves.download, plot.bottom(),
            fadeBetween(curves.download.boundingRect().top(), plot.bottom(),
                        withOpacity(TWColor::green, areaOpacity)));
  drawCurve(painter, curves.download, curvePen(TWColor::green, downloadWidth));
  QPen dashed = curvePen(TWColor::cyan, uploadWidth);
  dashed.setDashPattern({dash / uploadWidth, dash / uploadWidth}); // in pen widths
  drawCurve(painter, curves.upload, dashed);
}

} // namespace tidewell
