#pragma once

#include <QAccessible>
#include <QWidget>

namespace tidewell {

/// A widget that paints one thing, and that assistive technology meets as one thing: with a role, a
/// name and no children. Main thread.
class PaintedWidget : public QWidget {
  Q_OBJECT

public:
  explicit PaintedWidget(QAccessible::Role role, QWidget* parent = nullptr);

  [[nodiscard]] QAccessible::Role role() const { return m_role; }

protected:
  /// What is read aloud. Tells assistive technology when it is new.
  void setSpoken(const QString& name, const QString& description = {});

private:
  QAccessible::Role m_role;
};

} // namespace tidewell
