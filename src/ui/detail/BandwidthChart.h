#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/detail/AxisChart.h"

#include <vector>

namespace tidewell {

/// Download and upload of all samples, in megabits per second. Main thread.
class BandwidthChart final : public AxisChart {
  Q_OBJECT

public:
  explicit BandwidthChart(QWidget* parent = nullptr);

  /// Shows these samples, oldest first.
  void setSnapshots(const SnapshotList& snapshots);

protected:
  void paintCurves(QPainter& painter) const override;

private:
  std::vector<double> m_download;
  std::vector<double> m_upload;
};

} // namespace tidewell
