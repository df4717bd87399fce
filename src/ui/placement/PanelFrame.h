#pragma once

#include <QScrollArea>

namespace tidewell {

/// Shows a panel, or as much of it as there is room for: then the wheel and the focus scroll it.
/// Main thread.
class PanelFrame final : public QScrollArea {
  Q_OBJECT

public:
  /// Takes the panel, which keeps its own size.
  PanelFrame(QWidget* panel, QWidget* parent);

  /// Takes the panel's size as far as that fits, and tells it. Device-independent pixels.
  QSize fit(const QSize& room);
};

} // namespace tidewell
