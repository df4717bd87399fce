#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/detail/AxisChart.h"

#include <vector>

namespace tidewell {

/// Latency of all samples, in milliseconds. Main thread.
class LatencyChart final : public AxisChart {
  Q_OBJECT

public:
  explicit LatencyChart(QWidget* parent = nullptr);

  /// Shows these samples, oldest first.
  void setSnapshots(const SnapshotList& snapshots);

protected:
  void paintCurves(QPainter& painter) const override;

private:
  [[nodiscard]] QString summary() const;

  std::vector<double> m_latency;
};

} // namespace tidewell
