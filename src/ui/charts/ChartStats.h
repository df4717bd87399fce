#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/AccessibleWidgets.h"

#include <array>
#include <cstdint>

namespace tidewell {

class StatCell;

/// Four cards with figures about the download, side by side.
class ChartStats final : public SpokenGroup {
  Q_OBJECT

public:
  explicit ChartStats(QWidget* parent);

  /// The current rate, in bytes per second.
  void setCurrent(std::int64_t downloadBytesPerSec);
  /// The samples for the other figures.
  void setSnapshots(const SnapshotList& snapshots);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  // Children, in reading order.
  std::array<StatCell*, 4> m_cards;
};

} // namespace tidewell
