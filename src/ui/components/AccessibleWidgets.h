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

/// A line one pixel wide. Main thread.
class Divider final : public PaintedWidget {
  Q_OBJECT

public:
  /// Horizontal: as wide as its place. Vertical: so many pixels high.
  static Divider* horizontal(QWidget* parent);
  static Divider* vertical(int height, QWidget* parent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  explicit Divider(QWidget* parent);
};

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
