#pragma once

#include "sampling/NetworkStatus.h"
#include "ui/components/ViewTime.h"

#include <QWidget>

#include <array>
#include <cstdint>

namespace tidewell {

class ValueRow;
class StatCell;
class StatusBadge;
class TextLine;
struct ConnectionInfo;

/// The details of the connection, one per row.
class ConnectionSection final : public QWidget {
  Q_OBJECT

public:
  explicit ConnectionSection(QWidget* parent);

  /// Repaints only rows that changed.
  void setInfo(const ConnectionInfo& info);

private:
  // Children, in reading order.
  std::array<ValueRow*, 5> m_rows{};
};

/// Four labelled figures in two rows on a card with rounded corners.
class StatsGrid final : public QWidget {
  Q_OBJECT

public:
  explicit StatsGrid(QWidget* parent);

  /// Bytes per second, milliseconds and percent. Repaints only cells that changed.
  void setFigures(std::int64_t uploadBytesPerSec, double latencyMs, double jitterMs,
                  double packetLossPercent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  // Children, in reading order.
  std::array<StatCell*, 4> m_cells;
};

/// The current download rate in large type, the same in megabits, and the network's status.
class ThroughputHero final : public QWidget {
  Q_OBJECT

public:
  ThroughputHero(const ViewTime& time, QWidget* parent);

  void setDownload(std::int64_t bytesPerSec);
  void setStatus(NetworkStatus status);

private:
  void layOut();

  // Children.
  TextLine* m_title;
  TextLine* m_rate;
  TextLine* m_megabits;
  StatusBadge* m_badge;
};

} // namespace tidewell
