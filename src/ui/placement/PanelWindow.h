#pragma once

#include <QPoint>
#include <QScrollArea>
#include <QWidget>

#include <memory>
#include <optional>

namespace tidewell {

/// Shows a panel, or as much of it as there is room for: then the wheel and the focus scroll it.
/// Main thread.
class PanelFrame final : public QScrollArea {
  Q_OBJECT

public:
  /// Takes the panel, which keeps its own size.
  PanelFrame(QWidget* panel, QWidget* parent);

  /// Takes the panel's size as far as that fits, and tells it. Device-independent pixels.
  QSize fit(const QSize& room);
};

/// The window in which a panel appears: beside the item, above everything, gone as soon as the user
/// turns to something else or presses Escape. Made for one opening. Main thread.
class PanelWindow : public QWidget {
  Q_OBJECT

public:
  /// A host for the display that the application runs on.
  [[nodiscard]] static std::unique_ptr<PanelWindow> make();

  /// Takes the content, which keeps its own size, and shows it. `point` is where the user clicked,
  /// in the pixels of the item's host.
  virtual void open(QWidget* content, std::optional<QPoint> point) = 0;

  /// How the user got rid of the window.
  enum class Dismissal {
    here,      ///< By a key or a click that the window itself was given.
    elsewhere, ///< By turning to something else, which may be the item, whose click is to come.
  };

Q_SIGNALS:
  /// The user has turned away, and the window is hidden.
  void dismissed(tidewell::PanelWindow::Dismissal how);

protected:
  explicit PanelWindow(Qt::WindowFlags flags);

  void dismiss(Dismissal how);
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tidewell
