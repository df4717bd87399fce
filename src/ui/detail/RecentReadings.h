#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/SpokenGroup.h"

#include <array>

namespace tidewell {

class ReadingRow;

/// The last samples, the newest first. Main thread.
class RecentReadings final : public SpokenGroup {
  Q_OBJECT

public:
  static constexpr int mostReadings = 20;

  explicit RecentReadings(QWidget* parent);

  /// Shows the last of these samples, which are the oldest first.
  void setSnapshots(const SnapshotList& snapshots);

private:
  std::array<ReadingRow*, mostReadings> m_rows{}; // children; those not needed are hidden
};

} // namespace tidewell
