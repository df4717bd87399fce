#pragma once

#include <QAccessible>
#include <QWidget>

namespace tidewell {

/// A widget that paints one thing and appears to assistive technology as one thing: with a role, a
/// name and no children. In a layout it takes any width and a fixed height.
class PaintedWidget : public QWidget {
  Q_OBJECT

public:
  explicit PaintedWidget(QAccessible::Role role, QWidget* parent = nullptr);

  [[nodiscard]] QAccessible::Role role() const { return m_role; }

protected:
  /// Sets the accessible name and description, which are announced when they change.
  void setSpoken(const QString& name, const QString& description = {});
  /// Repaints and updates the tool tip. Call it when the content has changed.
  void contentChanged();
  /// The full text if it does not fit and is shown cut, otherwise empty. Becomes the tool tip.
  [[nodiscard]] virtual QString cutText() const { return {}; }
  bool event(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  QAccessible::Role m_role;
};

/// A line one pixel wide.
class Divider final : public PaintedWidget {
  Q_OBJECT

public:
  /// A horizontal one takes the available width.
  static Divider* horizontal(QWidget* parent);
  /// `height` is in pixels.
  static Divider* vertical(int height, QWidget* parent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  explicit Divider(QWidget* parent);
};

/// A widget of several parts that appears to assistive technology as a group with its own role.
class SpokenGroup : public QWidget {
  Q_OBJECT

public:
  SpokenGroup(QAccessible::Role role, const QString& name, QWidget* parent = nullptr);

  [[nodiscard]] QAccessible::Role role() const { return m_role; }

private:
  QAccessible::Role m_role;
};

} // namespace tidewell
