#pragma once

#include "ui/placement/BackgroundBlur.h"

#include <QPoint>
#include <QScrollArea>
#include <QWidget>

#include <memory>
#include <optional>

namespace tidewell {

/// Shows a panel. If there is not enough space, wheel and focus scroll it.
class PanelFrame final : public QScrollArea {
  Q_OBJECT

public:
  /// Takes ownership of the panel, which keeps its own size.
  PanelFrame(QWidget* panel, QWidget* parent);

  /// Resizes to the panel's size within `room`. Returns the new size in device-independent pixels.
  QSize fit(const QSize& room);
};

/// The window of the panel: beside the item and above all others. It closes when the user clicks
/// elsewhere or presses Escape. Created for each opening.
class PanelWindow : public QWidget {
  Q_OBJECT

public:
  /// Creates the kind of window that suits the display.
  [[nodiscard]] static std::unique_ptr<PanelWindow> make();

  /// Takes ownership of the content, which keeps its own size, and shows it. `point` is where the
  /// user clicked, in the display server's pixels.
  virtual void open(QWidget* content, std::optional<QPoint> point) = 0;

  /// How the user closed the window.
  enum class Dismissal {
    here,      ///< With a key or click in the window itself.
    elsewhere, ///< By activating something else, possibly the item, whose click follows.
  };

Q_SIGNALS:
  /// The user has closed the panel. The window is hidden.
  void dismissed(tidewell::PanelWindow::Dismissal how);

protected:
  explicit PanelWindow(Qt::WindowFlags flags);

  virtual void dismiss(Dismissal how);
  void keyPressEvent(QKeyEvent* event) override;
  /// Of the desktop's shell.
  void closeEvent(QCloseEvent* event) override;

  /// Blurs what lies behind the panel, if it is translucent. `panel` is in the window's pixels.
  void blurBehind(const QRect& panel);

private:
  std::optional<BackgroundBlur> m_blur;
};

} // namespace tidewell
