#pragma once

#include "ui/panel/ActionBar.h"
#include "ui/placement/PanelWindow.h"

#include <QElapsedTimer>
#include <QObject>

#include <memory>
#include <optional>

namespace tidewell {

struct ResidentState;

/// Opens and closes the panel. Main thread.
class PanelController final : public QObject {
  Q_OBJECT

public:
  /// Borrows the state.
  PanelController(ResidentState& state, PanelActions actions);
  ~PanelController() override;

  /// What a click on the item does: opens the panel, or closes it when it is open. A click that
  /// has just made the panel lose the focus was meant to close it.
  void toggle(std::optional<QPoint> point);
  /// Shows the panel, wherever it was.
  void open(std::optional<QPoint> point);
  void close();

  [[nodiscard]] bool isOpen() const { return m_host != nullptr; }

Q_SIGNALS:
  void opened();
  void closed();

private:
  ResidentState& m_state;
  PanelActions m_actions;
  std::unique_ptr<PanelWindow> m_host;
  QElapsedTimer m_sinceLeft;
};

} // namespace tidewell
