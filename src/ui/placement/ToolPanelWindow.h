#pragma once

#include "ui/placement/OutsideClicks.h"
#include "ui/placement/PanelWindow.h"

namespace tidewell {

class PanelFrame;

/// A panel as an ordinary window that the window manager keeps above others and that places itself.
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
