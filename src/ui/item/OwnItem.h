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

/// What the item's user may ask for. Main thread.
struct ItemCommands {
  /// Opens the panel, or closes it; the place in the display server's pixels.
  std::function<void(std::optional<QPoint> point)> togglePanel;
  std::function<void()> openDetail;
  std::function<void()> openSettings;
  std::function<void()> runSpeedTest;
  std::function<void()> copyAddress;
  std::function<void()> quit;
};

/// The item where no panel takes one: an icon in an old-style tray, or a small window above all
/// others where there is not even that. Main thread.
class OwnItem {
public:
  /// Borrows the text.
  OwnItem(Published<std::string>& text, ItemCommands commands);
  OwnItem(const OwnItem&) = delete;
  OwnItem& operator=(const OwnItem&) = delete;
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
