#pragma once

#include <QWidget>

#include <array>
#include <cstdint>

namespace tidewell {

class StatCell;

/// Two rows of two labelled figures on one card with round corners. Main thread.
class StatsGrid final : public QWidget {
  Q_OBJECT

public:
  explicit StatsGrid(QWidget* parent);

  /// Bytes per second, milliseconds and percent. Changes only the cells that show something new.
  void setFigures(std::int64_t uploadBytesPerSec, double latencyMs, double jitterMs,
                  double packetLossPercent);

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void clipCells();

  // Children, in reading order.
  std::array<StatCell*, 4> m_cells;
};

} // namespace tidewell
