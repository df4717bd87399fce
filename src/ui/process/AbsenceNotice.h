#pragma once

#include "base/Observers.h"
#include "base/Published.h"

#include <QWidget>

namespace tidewell {

/// Says at the top of a window that the resident does not run, for as long as it does not. Takes
/// no room from what it lies on. Main thread.
class AbsenceNotice final : public QWidget {
  Q_OBJECT

public:
  /// Borrows what tells whether the resident runs.
  AbsenceNotice(Published<bool>& isThere, QWidget* window);

protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void place();

  Subscription m_subscription;
};

} // namespace tidewell
