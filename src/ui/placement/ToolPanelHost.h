#pragma once

#include "ui/placement/OutsideClicks.h"
#include "ui/placement/PanelHost.h"

namespace tidewell {

/// A panel as an ordinary window that the window manager keeps above others and that places itself.
class ToolPanelHost final : public PanelHost {
  Q_OBJECT

public:
  ToolPanelHost();

  void open(QWidget* content, std::optional<QPoint> point) override;

protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void place();

  QWidget* m_content = nullptr;
  std::optional<QPoint> m_anchor;
  OutsideClicks m_outsideClicks{*this};
};

} // namespace tidewell
