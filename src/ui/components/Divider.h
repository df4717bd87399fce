#pragma once

#include "ui/components/PaintedWidget.h"

namespace tidewell {

/// A line one pixel wide. Main thread.
class Divider final : public PaintedWidget {
  Q_OBJECT

public:
  /// Horizontal: as wide as its place. Vertical: so many pixels high.
  static Divider* horizontal(QWidget* parent);
  static Divider* vertical(int height, QWidget* parent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  explicit Divider(QWidget* parent);
};

} // namespace tidewell
