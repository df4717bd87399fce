#pragma once

#include "base/Observers.h"
#include "base/Published.h"

#include <QMenu>
#include <QPoint>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tidewell {

class ItemWindow;

/// The commands of the item.
struct ItemCommands {
  /// Opens or closes the panel. `point` is in the display server's pixels.
  std::function<void(std::optional<QPoint> point)> togglePanel;
  std::function<void()> openDetail;
  std::function<void()> openSettings;
  std::function<void()> runSpeedTest;
  std::function<void()> copyAddress;
  std::function<void()> quit;
};

/// The item on desktops whose panel shows none: an icon in an X11 system tray, otherwise a small
/// window.
class OwnItem {
public:
  /// Borrows the text.
  OwnItem(Published<std::string>& text, ItemCommands commands);
  ~OwnItem();

private:
  void fillMenu();
  void showInTray();
  void showText(const std::string& text);

  ItemCommands m_commands;
  QMenu m_menu;
  std::unique_ptr<QSystemTrayIcon> m_icon;
  std::unique_ptr<ItemWindow> m_window;
  Subscription m_text;
};

} // namespace tidewell
