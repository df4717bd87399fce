#pragma once

#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

namespace tidewell {

/// The window in which a panel appears: beside the item, above everything, gone as soon as the user
/// turns to something else or presses Escape. Made for one opening. Main thread.
class PanelHost : public QWidget {
  Q_OBJECT

public:
  /// A host for the display that the application runs on.
  [[nodiscard]] static std::unique_ptr<PanelHost> make();

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
  void dismissed(tidewell::PanelHost::Dismissal how);

protected:
  explicit PanelHost(Qt::WindowFlags flags);

  void dismiss(Dismissal how);
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tidewell
