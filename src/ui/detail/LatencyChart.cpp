#include "ui/detail/LatencyChart.h"

#include "ui/components/ShownText.h"
#include "ui/detail/ChartCurve.h"
#include "ui/tokens/TWColor.h"

#include <QPainter>

namespace tidewell {

namespace {

constexpr int chartHeight = 150;
constexpr double lineThickness = 1.5;
// In milliseconds: below this differences mean nothing.
constexpr double leastTop = 1.0;

} // namespace

LatencyChart::LatencyChart(QWidget* parent) : AxisChart(chartHeight, QStringLiteral("ms"), parent) {
  setSnapshots({});
}

void LatencyChart::setSnapshots(const SnapshotList& snapshots) {
  m_latency.clear();
  for (const auto& snapshot : snapshots) {
    m_latency.push_back(snapshot->latencyMs());
  }
  setAxis({ChartCurve::largest(m_latency), leastTop});
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
  ChartCurve(m_latency, axis(), plot()).draw(painter, TWColor::yellow(), lineThickness);
}

} // namespace tidewell
