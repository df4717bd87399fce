#pragma once

#include <QWidget>

namespace tidewell {

/// A line one pixel wide. Main thread.
class Divider final : public QWidget {
  Q_OBJECT

public:
  /// Horizontal: as wide as its place. Vertical: so many pixels high.
  static Divider* horizontal(QWidget* parent);
  static Divider* vertical(int height, QWidget* parent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  using QWidget::QWidget;
};

} // namespace tidewell
