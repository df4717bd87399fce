#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/AccessibleWidgets.h"

namespace tidewell {

/// A small chart of the recent throughput with a header and without axes.
class MiniGraphView final : public PaintedWidget {
  Q_OBJECT

public:
  explicit MiniGraphView(QWidget* parent = nullptr);

  /// Shows these samples, oldest first.
  void setSnapshots(const SnapshotList& snapshots);

  [[nodiscard]] QSize sizeHint() const override;

  /// The chart's area, including its background.
  [[nodiscard]] QRect chart() const;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  [[nodiscard]] double titleWidth() const;
  void paintHeader(QPainter& painter) const;
  void paintChart(QPainter& painter) const;

  SnapshotList m_snapshots;
};

} // namespace tidewell
