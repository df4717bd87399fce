#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/AccessibleWidgets.h"

#include <array>

namespace tidewell {

/// A row with one sample.
class ReadingRow final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ReadingRow(QWidget* parent);

  void setSnapshot(const NetworkSnapshot& snapshot);

  /// The texts shown: time of day, download, upload and latency.
  [[nodiscard]] const std::array<QString, 4>& texts() const { return m_texts; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::array<QString, 4> m_texts;
};

/// The last samples, newest first.
class RecentReadings final : public SpokenGroup {
  Q_OBJECT

public:
  static constexpr int mostReadings = 20;

  explicit RecentReadings(QWidget* parent);

  /// Shows the last of these samples, which are sorted oldest first.
  void setSnapshots(const SnapshotList& snapshots);

private:
  std::array<ReadingRow*, mostReadings> m_rows{}; // children; unused ones are hidden
};

} // namespace tidewell
