#pragma once

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QMenu;

namespace tidewell {

/// The panel's text as a picture, as hosts of the item get it. `edge` is 22 or 44.
[[nodiscard]] QPixmap squarePicture(const std::string& text, int edge);
[[nodiscard]] QPixmap widePicture(const std::string& text);

/// The item as a small window that stays above others and can be dragged. Main thread.
class ItemWindow final : public QWidget {
  Q_OBJECT

public:
  using Clicked = std::function<void(std::optional<QPoint> point)>;

  /// Borrows the menu, which the other mouse button opens.
  ItemWindow(QMenu& menu, Clicked clicked);

  void showText(const std::string& text);

protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  QMenu& m_menu;
  Clicked m_clicked;
  QPixmap m_picture;
  std::optional<QPoint> m_pressed; // where the button went down, unless it became a drag
};

} // namespace tidewell
