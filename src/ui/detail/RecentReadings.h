#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/AccessibleWidgets.h"

#include <array>

namespace tidewell {

/// One sample as a line of text. Main thread.
class ReadingRow final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ReadingRow(QWidget* parent);

  void setSnapshot(const NetworkSnapshot& snapshot);

  /// Time of day, download, upload and latency, as shown.
  [[nodiscard]] const std::array<QString, 4>& texts() const { return m_texts; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::array<QString, 4> m_texts;
};

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
