#pragma once

#include <QAccessible>
#include <QWidget>

namespace tidewell {

/// A widget of several parts that assistive technology meets as a group with a role of its own.
/// Main thread.
class SpokenGroup : public QWidget {
  Q_OBJECT

public:
  SpokenGroup(QAccessible::Role role, const QString& name, QWidget* parent = nullptr);

  [[nodiscard]] QAccessible::Role role() const { return m_role; }

private:
  QAccessible::Role m_role;
};

} // namespace tidewell
