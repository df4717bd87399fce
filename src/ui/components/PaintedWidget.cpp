#include "ui/components/PaintedWidget.h"

#include <QAccessibleWidget>

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

QAccessibleInterface* makeLeaf(const QString& /*className*/, QObject* object) {
  auto* const painted = qobject_cast<PaintedWidget*>(object);
  return painted ? new Leaf(painted) : nullptr;
}

} // namespace

PaintedWidget::PaintedWidget(QAccessible::Role role, QWidget* parent)
    : QWidget(parent), m_role(role) {
  QAccessible::installFactory(makeLeaf); // once, however often it is called
}

void PaintedWidget::setSpoken(const QString& name, const QString& description) {
  if (name != accessibleName()) {
    setAccessibleName(name);
  }
  if (description != accessibleDescription()) {
    setAccessibleDescription(description);
  }
}

} // namespace tidewell
