#include "ui/charts/AxisCharts.h"

#include "ui/charts/Curves.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <iterator>
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

QString bandwidthTitle() { return translatedText("Bandwidth Over Time"); }

constexpr int latencyHeight = 150;
constexpr double latencyWidth = 1.5;
// In milliseconds. Smaller differences are insignificant.
constexpr double leastMilliseconds = 1.0;

QString downArrow() { return QStringLiteral("\u2193"); }
QString upArrow() { return QStringLiteral("\u2191"); }

constexpr int swatchWidth = 16;
constexpr int swatchHeight = 3;
constexpr double swatchRadius = 2.0;
constexpr int swatchSpacing = 6;

TextStyle legendStyle() { return {TWFont::standard(12, QFont::Normal), TWColor::textSecondary}; }

} // namespace

AxisChart::AxisChart(int height, QStringList units, QWidget* parent)
    : PaintedWidget(QAccessible::Chart, parent), m_height(height), m_units(std::move(units)),
      m_axis(1.0, 1.0) {
  setMouseTracking(true);
}

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

void AxisChart::setSamples(const SnapshotList& snapshots, const ValueAxis& axis,
                           const Words& words) {
  m_snapshots = snapshots;
  m_axis = axis;
  m_words = words;
  speak();
  update();
}

void AxisChart::mouseMoveEvent(QMouseEvent* event) {
  const double x = event->position().x();
  const QRectF area = plot();
  pointAt(x >= area.left() && x <= area.right() ? std::optional(x) : std::nullopt);
}

void AxisChart::leaveEvent(QEvent* /*event*/) { pointAt(std::nullopt); }

void AxisChart::wheelEvent(QWheelEvent* event) {
  pointAt(std::nullopt);
  event->ignore();
}

void AxisChart::hideEvent(QHideEvent* /*event*/) { pointAt(std::nullopt); }

void AxisChart::pointAt(std::optional<double> x) {
  if (x != m_pointer) {
    m_pointer = x;
    speak();
    update();
  }
}

std::optional<ChartReading> AxisChart::reading() const {
  if (!m_pointer || m_snapshots.empty()) {
    return std::nullopt;
  }
  const QRectF area = plot();
  const double gaps = std::max(1.0, static_cast<double>(m_snapshots.size()) - 1.0);
  const double step = area.width() / gaps;
  const double last = static_cast<double>(m_snapshots.size()) - 1.0;
  const double index = std::clamp(std::round((*m_pointer - area.left()) / step), 0.0, last);
  const NetworkSnapshot& sample = *m_snapshots[static_cast<std::size_t>(index)];
  ChartReading shown{area.left() + index * step,
                     {{timeText(sample.timestamp()), TWColor::textSecondary}}};
  std::ranges::move(ownFigures(sample), std::back_inserter(shown.parts));
  shown.parts.push_back({downArrow() + rateText(sample.downloadBytesPerSec()), TWColor::accent});
  shown.parts.push_back({upArrow() + rateText(sample.uploadBytesPerSec()), TWColor::cyan});
  return shown;
}

std::vector<ReadingPart> AxisChart::ownFigures(const NetworkSnapshot& /*sample*/) const {
  return {};
}

void AxisChart::speak() {
  QString description =
      withScale(m_words.summary, m_axis.label(m_axis.top(), m_units) + u' ' + m_axis.unit(m_units));
  if (const auto shown = reading()) {
    QStringList texts;
    for (const ReadingPart& part : shown->parts) {
      texts << part.text;
    }
    const QString spoken = texts.join(QStringLiteral(", "))
                               .replace(downArrow(), translatedText("download") + u' ')
                               .replace(upArrow(), translatedText("upload") + u' ');
    description = translatedText("At the pointer: %1. ").arg(spoken) + description;
  }
  setSpoken(m_words.title, description);
}

void AxisChart::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintGrid(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  paintCurves(painter);
  if (const auto shown = reading()) {
    shown->draw(painter, plot());
  }
}

void AxisChart::paintGrid(QPainter& painter) const {
  const QRectF area = plot();
  const int half = QFontMetrics(labelStyle().font).ascent() / 2;
  for (const double tick : m_axis.ticks()) {
    const double y = std::round(m_axis.yOf(tick, area));
    fillLine(painter, QRectF(area.left(), y, area.width(), 1.0), TWColor::borderSubtle);
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
  const ValueAxis axis(std::max(ChartCurve::largest(m_download), ChartCurve::largest(m_upload)),
                       leastMegabits);
  setSamples(snapshots, axis, {bandwidthTitle(), graphSummary(snapshots)});
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
  const ValueAxis axis(ChartCurve::largest(m_latency), leastMilliseconds);
  setSamples(snapshots, axis, {translatedText("Latency Over Time"), summary()});
}

QString LatencyChart::summary() const {
  if (m_latency.empty()) {
    return noSamplesText();
  }
  return translatedText("Current %1 ms, peak %2 ms.")
      .arg(spokenValue(figureText(m_latency.back(), 0)),
           figureText(ChartCurve::largest(m_latency), 0));
}

std::vector<ReadingPart> LatencyChart::ownFigures(const NetworkSnapshot& sample) const {
  return {{figureText(sample.latencyMs(), 0) + QStringLiteral(" ms"), TWColor::yellow}};
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
