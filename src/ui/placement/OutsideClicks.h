#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

class QWidget;
struct xcb_connection_t;

namespace tidewell {

/// Reports clicks outside of a window under X11, without consuming them. The window does not lose
/// the focus to every such click, for example not to one on a bare desktop. Does nothing on other
/// displays.
class OutsideClicks final : public QObject, private QAbstractNativeEventFilter {
  Q_OBJECT

public:
  /// Borrows the window.
  explicit OutsideClicks(const QWidget& window);
  ~OutsideClicks() override;

Q_SIGNALS:
  /// A button was pressed and released outside of the window.
  void clicked();

private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  const QWidget& m_window;
  xcb_connection_t* m_connection = nullptr;
  bool m_isPressed = false;
};

} // namespace tidewell
