#pragma once

#include "ui/components/PaintedWidget.h"

namespace tidewell {

/// The titles of the process table's columns, on a ground that hides the rows behind. Main thread.
class ProcessListHeader final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ProcessListHeader(QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void headerCell(QPainter& painter, std::size_t column) const;
};

} // namespace tidewell
