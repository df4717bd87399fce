#include "ui/charts/AxisCharts.h"

#include "ui/charts/Curves.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tidewell {
namespace {

constexpr int labelSpacing = 8;
// With the fonts that the windows are made for.
constexpr int usualLabelWidth = 62;

TextStyle labelStyle() { return {TWFont::monoTiny(), TWColor::textTertiary}; }

constexpr int bandwidthHeight = 200;
constexpr double areaOpacity = 0.25;
constexpr double downloadWidth = 2.0;
constexpr double uploadWidth = 1.5;

QString bandwidthTitle() { return QStringLiteral("Bandwidth Over Time"); }

constexpr int latencyHeight = 150;
constexpr double latencyWidth = 1.5;
// In milliseconds. Smaller differences are insignificant.
constexpr double leastMilliseconds = 1.0;

constexpr int swatchWidth = 16;
constexpr int swatchHeight = 3;
constexpr double swatchRadius = 2.0;
constexpr int swatchSpacing = 6;

TextStyle legendStyle() { return {TWFont::standard(12, QFont::Normal), TWColor::textSecondary}; }

} // namespace

AxisChart::AxisChart(int height, QStringList units, QWidget* parent)
    : PaintedWidget(QAccessible::Chart, parent), m_height(height), m_units(std::move(units)),
      m_axis(1.0, 1.0) {}

QRectF AxisChart::plot() const {
  // Leaves room for half a label above the top grid line and below the bottom one.
  const int edge = (lineHeight(labelStyle()) + 1) / 2;
  return QRectF(rect()).adjusted(0.0, edge, -(labelSpacing + labelWidth()), -edge);
}

int AxisChart::labelWidth() const {
  // No label has more figures.
  const double widest = lineWidth(QStringLiteral("0.00 ") + m_units.first(), labelStyle());
  return std::max(usualLabelWidth, static_cast<int>(std::ceil(widest)));
}

void AxisChart::setAxis(const ValueAxis& axis) { m_axis = axis; }

void AxisChart::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintGrid(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  paintCurves(painter);
}

void AxisChart::paintGrid(QPainter& painter) const {
  const QRectF area = plot();
  const int half = QFontMetrics(labelStyle().font).ascent() / 2;
  for (const double tick : m_axis.ticks()) {
    const double y = std::round(m_axis.yOf(tick, area));
    painter.fillRect(QRectF(area.left(), y, area.width(), 1.0), TWColor::borderSubtle);
    const bool isTop = tick == m_axis.ticks().back();
    const QString text =
        m_axis.label(tick, m_units) + (isTop ? u' ' + m_axis.unit(m_units) : QString());
    drawLine(painter, QRectF(area.right() + labelSpacing, y - half - 1, labelWidth(), 2.0 * half),
             text, labelStyle());
  }
}

BandwidthChart::BandwidthChart(QWidget* parent)
    : AxisChart(bandwidthHeight, {"Mbps", "Gbps", "Tbps", "Pbps"}, parent) {
  setSnapshots({});
}

void BandwidthChart::setSnapshots(const SnapshotList& snapshots) {
  m_download.clear();
  m_upload.clear();
  for (const auto& snapshot : snapshots) {
    m_download.push_back(megabits(snapshot->downloadBytesPerSec()));
    m_upload.push_back(megabits(snapshot->uploadBytesPerSec()));
  }
  setAxis(
      {std::max(ChartCurve::largest(m_download), ChartCurve::largest(m_upload)), leastMegabits});
  setSpoken(bandwidthTitle(), graphSummary(snapshots));
  update();
}

void BandwidthChart::paintCurves(QPainter& painter) const {
  const QRectF area = plot();
  const ChartCurve download(m_download, axis(), area);
  const ChartCurve upload(m_upload, axis(), area);
  download.fill(painter, withOpacity(TWColor::accent, areaOpacity));
  download.draw(painter, TWColor::accent, downloadWidth);
  upload.draw(painter, TWColor::cyan, uploadWidth);
}

LatencyChart::LatencyChart(QWidget* parent) : AxisChart(latencyHeight, {"ms"}, parent) {
  setSnapshots({});
}

void LatencyChart::setSnapshots(const SnapshotList& snapshots) {
  m_latency.clear();
  for (const auto& snapshot : snapshots) {
    m_latency.push_back(snapshot->latencyMs());
  }
  setAxis({ChartCurve::largest(m_latency), leastMilliseconds});
  setSpoken(QStringLiteral("Latency Over Time"), summary());
  update();
}

QString LatencyChart::summary() const {
  if (m_latency.empty()) {
    return QStringLiteral("No samples yet");
  }
  return QStringLiteral("Current %1 ms, peak %2 ms.")
      .arg(spokenValue(figureText(m_latency.back(), 0)),
           figureText(ChartCurve::largest(m_latency), 0));
}

void LatencyChart::paintCurves(QPainter& painter) const {
  ChartCurve(m_latency, axis(), plot()).draw(painter, TWColor::yellow, latencyWidth);
}

LegendItem::LegendItem(QString label, QColor color, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_label(std::move(label)), m_color(color) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  const int textWidth = static_cast<int>(std::ceil(lineWidth(m_label, legendStyle())));
  setFixedSize(swatchWidth + swatchSpacing + textWidth, lineHeight(legendStyle()));
  setSpoken(m_label);
}

void LegendItem::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  const int top = (height() - swatchHeight) / 2;
  fillRounded(painter, QRectF(0.0, top, swatchWidth, swatchHeight), swatchRadius, m_color);
  drawLine(painter, rect().adjusted(swatchWidth + swatchSpacing, 0, 0, 0), m_label, legendStyle());
}

} // namespace tidewell
