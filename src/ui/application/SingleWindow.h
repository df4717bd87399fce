#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <string>

namespace tidewell {

/// The program's icon of the desktop's theme in the sizes that window lists and title bars show;
/// null where it is not installed. Main thread.
[[nodiscard]] QIcon windowIcon();

/// A window of which there is at most one: made when it is asked for, raised when it is asked for
/// again, and gone when it is closed. Main thread.
class SingleWindow final : public QObject {
  Q_OBJECT

public:
  /// Makes the window's content; the caller owns it.
  using Make = std::function<QWidget*()>;

  explicit SingleWindow(Make make);
  ~SingleWindow() override;

  /// Brings the window to the front. `token` is what the desktop gave to prove that the user asked,
  /// empty when there is none.
  void show(const std::string& token);

  [[nodiscard]] bool isOpen() const { return !m_window.isNull(); }

Q_SIGNALS:
  void opened();
  void closed();

private:
  Make m_make;
  QPointer<QWidget> m_window;
};

} // namespace tidewell
