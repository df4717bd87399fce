#include "ui/components/Divider.h"

#include "ui/tokens/TWColor.h"

#include <QPainter>

namespace tidewell {

Divider::Divider(QWidget* parent) : PaintedWidget(QAccessible::Separator, parent) {}

Divider* Divider::horizontal(QWidget* parent) {
  auto* const divider = new Divider(parent);
  divider->setFixedHeight(1);
  return divider;
}

Divider* Divider::vertical(int height, QWidget* parent) {
  auto* const divider = new Divider(parent);
  divider->setFixedSize(1, height);
  return divider;
}

void Divider::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), TWColor::borderSubtle());
}

} // namespace tidewell
