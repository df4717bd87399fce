#include "ui/detail/BandwidthChart.h"

#include "ui/detail/ChartCurve.h"
#include "ui/panel/GraphCurves.h"
#include "ui/panel/GraphSummary.h"
#include "ui/tokens/TWColor.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace tidewell {

namespace {

constexpr int chartHeight = 200;
constexpr double areaOpacity = 0.25;
constexpr double downloadWidth = 2.0;
constexpr double uploadWidth = 1.5;
// In megabits per second: less than this is the noise of an idle machine.
constexpr double leastTop = 0.1;

QString titleText() { return QStringLiteral("Bandwidth Over Time"); }

QBrush fade(const QRectF& plot) {
  QLinearGradient gradient(plot.topLeft(), plot.bottomLeft());
  gradient.setColorAt(0.0, withOpacity(TWColor::accent(), areaOpacity));
  gradient.setColorAt(1.0, withOpacity(TWColor::accent(), 0.0));
  return gradient;
}

} // namespace

BandwidthChart::BandwidthChart(QWidget* parent)
    : AxisChart(chartHeight, QStringLiteral("Mbps"), parent) {
  setSnapshots({});
}

void BandwidthChart::setSnapshots(const SnapshotList& snapshots) {
  m_download.clear();
  m_upload.clear();
  for (const auto& snapshot : snapshots) {
    m_download.push_back(megabits(snapshot->downloadBytesPerSec()));
    m_upload.push_back(megabits(snapshot->uploadBytesPerSec()));
  }
  setAxis({std::max(ChartCurve::largest(m_download), ChartCurve::largest(m_upload)), leastTop});
  setSpoken(titleText(), graphSummary(snapshots));
  update();
}

void BandwidthChart::paintCurves(QPainter& painter) const {
  const QRectF area = plot();
  const ChartCurve download(m_download, axis(), area);
  const ChartCurve upload(m_upload, axis(), area);
  download.fill(painter, fade(area), area);
  download.draw(painter, TWColor::accent(), downloadWidth);
  upload.draw(painter, TWColor::cyan(), uploadWidth);
}

} // namespace tidewell
