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

/// The details of the connection, one row each. Main thread.
class ConnectionSection final : public QWidget {
  Q_OBJECT

public:
  explicit ConnectionSection(QWidget* parent);

  /// Changes only the rows that show something new.
  void setInfo(const ConnectionInfo& info);

private:
  // Children, in reading order.
  std::array<ValueRow*, 5> m_rows{};
};

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

/// The current download rate in large type, the same in megabits, and the status. Main thread.
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
