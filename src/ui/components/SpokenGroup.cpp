#include "ui/components/SpokenGroup.h"

#include <QAccessibleWidget>

namespace tidewell {

namespace {

QAccessibleInterface* makeGroup(const QString& /*className*/, QObject* object) {
  auto* const group = qobject_cast<SpokenGroup*>(object);
  return group ? new QAccessibleWidget(group, group->role()) : nullptr;
}

} // namespace

SpokenGroup::SpokenGroup(QAccessible::Role role, const QString& name, QWidget* parent)
    : QWidget(parent), m_role(role) {
  QAccessible::installFactory(makeGroup); // once, however often it is called
  setAccessibleName(name);
}

} // namespace tidewell
