#pragma once

#include "base/Observers.h"
#include "base/Published.h"
#include "ui/components/AccessibleWidgets.h"

namespace tidewell {

/// A notice at an edge of a window while the resident is not running. It takes no space in the
/// layout.
class AbsenceNotice final : public PaintedWidget {
  Q_OBJECT

public:
  /// The edge where the window has free space.
  enum class Edge { top, bottom };

  /// Borrows `isThere`, which is true while the resident runs.
  AbsenceNotice(Published<bool>& isThere, Edge edge, QWidget* window);

protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void place();

  Edge m_edge;
  Subscription m_subscription;
};

} // namespace tidewell
