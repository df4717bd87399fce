#include "ui/components/AccessibleWidgets.h"

#include "ui/components/Painting.h"
#include "ui/components/ToolTip.h"
#include "ui/tokens/TWColor.h"

#include <QAccessibleWidget>
#include <QPainter>

namespace tidewell {
namespace {

class Leaf final : public QAccessibleWidget {
public:
  explicit Leaf(PaintedWidget* painted) : QAccessibleWidget(painted, painted->role()) {}

  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override {
    return -1;
  }
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
  if (auto* const painted = qobject_cast<PaintedWidget*>(object)) {
    return new Leaf(painted);
  }
  auto* const group = qobject_cast<SpokenGroup*>(object);
  return group ? new QAccessibleWidget(group, group->role()) : nullptr;
}

} // namespace

PaintedWidget::PaintedWidget(QAccessible::Role role, QWidget* parent)
    : QWidget(parent), m_role(role) {
  QAccessible::installFactory(makeInterface); // repeated calls have no effect
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void PaintedWidget::setSpoken(const QString& name, const QString& description) {
  if (name != accessibleName()) {
    setAccessibleName(name);
  }
  if (description != accessibleDescription()) {
    setAccessibleDescription(description);
  }
}

void PaintedWidget::contentChanged() {
  setToolTip(cutText());
  update();
}

void PaintedWidget::resizeEvent(QResizeEvent* /*event*/) { setToolTip(cutText()); }

bool PaintedWidget::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && ToolTip::showFor(*this, *event)) {
    return true;
  }
  if (event->type() == QEvent::ToolTipChange) {
    ToolTip::textChanged(*this);
  }
  return QWidget::event(event);
}

Divider::Divider(QWidget* parent) : PaintedWidget(QAccessible::Separator, parent) {}

Divider* Divider::horizontal(QWidget* parent) {
  auto* const divider = new Divider(parent);
  divider->setFixedHeight(1);
  return divider;
}

Divider* Divider::vertical(int height, QWidget* parent) {
  auto* const divider = new Divider(parent);
  divider->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  divider->setFixedSize(1, height);
  return divider;
}

void Divider::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  fillLine(painter, rect(), TWColor::borderSubtle);
}

SpokenGroup::SpokenGroup(QAccessible::Role role, const QString& name, QWidget* parent)
    : QWidget(parent), m_role(role) {
  QAccessible::installFactory(makeInterface); // repeated calls have no effect
  setAccessibleName(name);
}

} // namespace tidewell
