#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

class QWidget;
struct xcb_connection_t;

namespace tidewell {

/// Hears under X11 of clicks beside a window, wherever they go, and takes none away: not every
/// click elsewhere costs a window the focus, one on a bare desktop does not. Silent on other
/// displays. Main thread.
class OutsideClicks final : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

public:
  /// Borrows the window.
  explicit OutsideClicks(const QWidget& window);
  OutsideClicks(const OutsideClicks&) = delete;
  OutsideClicks& operator=(const OutsideClicks&) = delete;
  ~OutsideClicks() override;

Q_SIGNALS:
  /// A button that was pressed beside the window has been released.
  void clicked();

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  const QWidget& m_window;
  xcb_connection_t* m_connection = nullptr;
  bool m_isPressed = false;
};

} // namespace tidewell
