#pragma once

#include "ui/mirror/ResidentMirror.h"
#include "ui/process/PanelController.h"
#include "ui/process/ResidentSocket.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

namespace tidewell {

/// The windows of one process: opens what is asked for and ends a while after the last one closed.
/// Main thread.
class WindowsApplication final : public QObject {
  Q_OBJECT

public:
  explicit WindowsApplication(QDBusConnection bus);
  ~WindowsApplication() override;

  /// Does what is asked, as soon as the resident's values have arrived.
  void handle(const WindowRequest& request);

private:
  [[nodiscard]] PanelActions panelActions();
  void listen();
  void becomeTheOnlyOne();
  void startWithValues();
  void perform(const WindowRequest& request);
  void report(WindowReport::Kind kind, WindowRequest::Kind window) const;
  void windowsChanged();
  void leaveIfUnused();

  QDBusConnection m_bus;
  ResidentMirror m_mirror;
  std::unique_ptr<ResidentSocket> m_socket; // none when started by hand
  PanelController m_panel;
  std::vector<WindowRequest> m_waiting; // for the resident's values
  bool m_isReady = false;
  QTimer m_idle;
};

} // namespace tidewell
