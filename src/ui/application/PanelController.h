#pragma once

#include "ui/panel/ActionBar.h"
#include "ui/placement/PanelWindow.h"

#include <QElapsedTimer>
#include <QObject>

#include <memory>
#include <optional>

namespace tidewell {

struct ResidentState;

/// Opens and closes the panel.
class PanelController final : public QObject {
  Q_OBJECT

public:
  /// Borrows the state.
  PanelController(ResidentState& state, PanelActions actions);
  ~PanelController() override;

  /// Handles a click on the item: opens the panel, or closes it if it is open. A click that has
  /// just taken the focus from the panel was meant to close it.
  void toggle(std::optional<QPoint> point);
  /// Opens the panel if it is not open.
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
