#pragma once

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>

class QMenu;

namespace tidewell {

/// Pictures of the item's text, as its hosts receive them. `edge` is 22 or 44 pixels.
[[nodiscard]] QPixmap squarePicture(const std::string& text, int edge);
[[nodiscard]] QPixmap widePicture(const std::string& text);

/// The item as a small draggable window above all others.
class ItemWindow final : public QWidget {
  Q_OBJECT

public:
  using Clicked = std::function<void(std::optional<QPoint> point)>;

  /// Borrows the menu, which a right click opens.
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
  std::optional<QPoint> m_pressed; // where the button was pressed; empty after a drag has started
};

} // namespace tidewell
