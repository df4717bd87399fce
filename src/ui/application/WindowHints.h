#pragma once

#include <string>

class QWidget;

namespace tidewell {

/// Asks the window manager for a dark title bar, which suits the dark content: any under X11, KWin
/// under Wayland. Call it before the window is shown. Does nothing on other displays.
void requestDarkTitleBar(QWidget& window);

/// Tells the desktop that the program it started with this token is there, so that the pointer no
/// longer looks busy. Does nothing on other displays, where the toolkit does it.
void endStartupNotification(const std::string& token);

} // namespace tidewell
