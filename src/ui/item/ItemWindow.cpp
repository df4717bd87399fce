#include "ui/item/ItemWindow.h"

#include "tile/TextTile.h"
#include "ui/placement/PanelPlacement.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QImage>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <QtEndian>

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace tidewell {
namespace {

template <class Draw> QPixmap picture(TileSize size, const Draw& draw) {
  std::vector<std::uint8_t> argb(size.bytes());
  draw(std::span(argb));
  QImage image(size.width, size.height, QImage::Format_ARGB32);
  for (int y = 0; y < size.height; ++y) {
    const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(size.width) * 4;
    qFromBigEndian<quint32>(&argb[row], size.width, image.scanLine(y));
  }
  return QPixmap::fromImage(image);
}

} // namespace

QPixmap squarePicture(const std::string& text, int edge) {
  return picture({edge, edge}, [&](auto argb) { TextTile::drawSquare(text, edge, argb); });
}

QPixmap widePicture(const std::string& text) {
  return picture(TextTile::wideSize(labelGuide),
                 [&](auto argb) { TextTile::drawWide(text, labelGuide, argb); });
}

ItemWindow::ItemWindow(QMenu& menu, Clicked clicked)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint), m_menu(menu),
      m_clicked(std::move(clicked)) {
  setWindowTitle(QStringLiteral("Tidewell"));
  setAttribute(Qt::WA_TranslucentBackground);
  setAttribute(Qt::WA_ShowWithoutActivating);
  setFocusPolicy(Qt::StrongFocus);
}

void ItemWindow::showText(const std::string& text) {
  m_picture = widePicture(text);
  // The picture is drawn for twice the density. Scaled down it matches the size of text in panels.
  m_picture.setDevicePixelRatio(2.0);
  setAccessibleName(QStringLiteral("Tidewell ") + QString::fromStdString(text));
  if (!isVisible()) {
    const QRect workArea = screen()->availableGeometry();
    setFixedSize(m_picture.deviceIndependentSize().toSize());
    move(panelPosition(likelyAnchor(screen()->geometry(), workArea), size(), screen()->geometry(),
                       workArea));
    show();
  }
  update();
}

void ItemWindow::paintEvent(QPaintEvent* /*event*/) { QPainter(this).drawPixmap(0, 0, m_picture); }

void ItemWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    m_pressed = event->position().toPoint();
  }
}

void ItemWindow::mouseMoveEvent(QMouseEvent* event) {
  const auto distance = QApplication::startDragDistance();
  if (m_pressed && (event->position().toPoint() - *m_pressed).manhattanLength() >= distance) {
    m_pressed.reset();
    windowHandle()->startSystemMove();
  }
}

void ItemWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && std::exchange(m_pressed, std::nullopt)) {
    m_clicked(geometry().center());
  }
}

void ItemWindow::contextMenuEvent(QContextMenuEvent* event) { m_menu.popup(event->globalPos()); }

void ItemWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Space) {
    m_clicked(geometry().center());
  } else {
    QWidget::keyPressEvent(event);
  }
}

} // namespace tidewell
