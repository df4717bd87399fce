#pragma once

#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <string>

namespace tidewell {

/// The program's icon from the desktop's theme, in the sizes used by window lists and title bars.
/// Null if it is not installed.
[[nodiscard]] QIcon windowIcon();

/// At most one window of a kind. `show` creates or raises it; closing deletes it.
class SingleWindow final : public QObject {
  Q_OBJECT

public:
  /// Creates the window. The caller owns it.
  using Make = std::function<QWidget*()>;

  explicit SingleWindow(Make make);
  ~SingleWindow() override;

  /// Brings the window to the front. `token` is the desktop's activation token, or empty.
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
