#pragma once

#include <QRect>

#include <memory>

class QWidget;

namespace tidewell {

/// Asks the compositor to blur what lies behind a translucent window. KWin does, under X11 and
/// Wayland; others ignore it.
class BackgroundBlur {
public:
  /// The window, borrowed, exists on the display.
  explicit BackgroundBlur(QWidget& window);
  BackgroundBlur(const BackgroundBlur&) = delete;
  BackgroundBlur& operator=(const BackgroundBlur&) = delete;
  ~BackgroundBlur();

  /// Blurs behind a rectangle with round corners, in the window's device-independent pixels.
  /// Replaces the one before.
  void set(const QRect& area, int radius);

private:
  struct KWinBlur;

  QWidget& m_window;
  std::unique_ptr<KWinBlur> m_blur; // null except with KWin under Wayland
};

} // namespace tidewell
