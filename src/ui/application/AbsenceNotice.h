#pragma once

#include "base/Observers.h"
#include "base/Published.h"
#include "ui/components/AccessibleWidgets.h"

namespace tidewell {

/// Says at an edge of a window that the resident does not run, for as long as it does not. Takes
/// no room from what it lies on. Main thread.
class AbsenceNotice final : public PaintedWidget {
  Q_OBJECT

public:
  /// Where the window leaves room for it.
  enum class Edge { top, bottom };

  /// Borrows what tells whether the resident runs.
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
