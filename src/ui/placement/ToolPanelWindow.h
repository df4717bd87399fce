#pragma once

#include "ui/placement/OutsideClicks.h"
#include "ui/placement/PanelWindow.h"

namespace tidewell {

class PanelFrame;

/// The panel's window on other displays: an ordinary window that positions itself and that the
/// window manager keeps above others.
class ToolPanelWindow final : public PanelWindow {
  Q_OBJECT

public:
  ToolPanelWindow();

  void open(QWidget* content, std::optional<QPoint> point) override;

protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void place();

  PanelFrame* m_frame = nullptr;
  std::optional<QPoint> m_anchor;
  OutsideClicks m_outsideClicks{*this};
};

} // namespace tidewell
