#pragma once

#include "ui/application/PanelController.h"
#include "ui/application/Preferences.h"
#include "ui/application/ResidentSocket.h"
#include "ui/application/SingleWindow.h"
#include "ui/clipboard/TextClipboard.h"
#include "ui/item/OwnItem.h"
#include "ui/mirror/ResidentMirror.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <vector>

namespace tidewell {

class OwnItem;

/// Opens the requested windows, and exits some time after the last one was closed.
class WindowsApplication final : public QObject {
  Q_OBJECT

public:
  /// `resident` is the absolute path of the resident's program.
  WindowsApplication(QDBusConnection bus, const std::string& resident);
  ~WindowsApplication() override;

  /// Handles the request as soon as the resident's values have arrived.
  void handle(const WindowRequest& request);

private:
  [[nodiscard]] PanelActions panelActions();
  [[nodiscard]] ItemCommands itemCommands();
  [[nodiscard]] QWidget* makeDetail();
  [[nodiscard]] QWidget* makeSettings();
  void listen();
  void becomeTheOnlyOne();
  void startWithValues();
  void perform(const WindowRequest& request);
  void copy(const std::string& text);
  void sayNotCopied();
  void quitAll();
  void setItemShown(bool isShown);
  template <class Shown> void watch(Shown& shown, WindowRequest::Kind kind);
  void windowsChanged();
  void leaveIfUnused();

  QDBusConnection m_bus;
  ResidentMirror m_mirror;
  Preferences m_preferences;
  std::unique_ptr<ResidentSocket> m_socket; // null if the user started the process
  PanelController m_panel;
  SingleWindow m_detail;
  SingleWindow m_settings;
  std::unique_ptr<OwnItem> m_item;
  std::unique_ptr<TextClipboard> m_clipboard; // once something was copied
  std::vector<WindowRequest> m_waiting;       // until the resident's values arrive
  bool m_isReady = false;
  QTimer m_patience; // limits the wait for those values
  QTimer m_idle;
};

} // namespace tidewell
