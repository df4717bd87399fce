#pragma once

#include "Panel.h"
#include "ui/tokens/TWColor.h"

#include <QPainter>
#include <QWidget>

#include <functional>
#include <memory>
#include <utility>

namespace tidewell::test {

/// A dark background for components.
class Sheet final : public QWidget {
public:
  explicit Sheet(QSize size) { resize(size); }

  template <class Widget> Widget* place(Widget* widget, const QRect& box) {
    widget->setParent(this);
    widget->setGeometry(box);
    return widget;
  }
  std::function<void(QPainter&)> paint;

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), TWColor::surface);
    painter.setRenderHint(QPainter::Antialiasing);
    if (paint) {
      paint(painter);
    }
  }
};

/// Shows the sheet.
inline std::shared_ptr<QWidget> shown(std::shared_ptr<Sheet> sheet) {
  sheet->show();
  Panel::settle();
  return sheet;
}

} // namespace tidewell::test
