#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/components/AccessibleWidgets.h"

namespace tidewell {

/// A small chart of the recent throughput, without axes, under a header. Main thread.
class MiniGraphView final : public PaintedWidget {
  Q_OBJECT

public:
  explicit MiniGraphView(QWidget* parent = nullptr);

  /// Shows these samples, oldest first.
  void setSnapshots(const SnapshotList& snapshots);

  [[nodiscard]] QSize sizeHint() const override;

  /// Where the chart lies, with its ground.
  [[nodiscard]] QRect chart() const;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void paintHeader(QPainter& painter) const;
  void paintChart(QPainter& painter) const;

  SnapshotList m_snapshots;
};

} // namespace tidewell
