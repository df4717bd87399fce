#pragma once

#include "ui/components/AccessibleWidgets.h"

#include <QPointer>
#include <QStringList>

namespace tidewell {

/// A tool tip inside the window of the widget that it belongs to. The toolkit's own is a window of
/// its own, which a compositor may tile or place anywhere.
class ToolTip final : public PaintedWidget {
  Q_OBJECT

public:
  /// Shows the widget's tool tip near this point of the widget, until the pointer leaves it or the
  /// user does something.
  static void show(QWidget& owner, const QPoint& place);

  /// Answers a widget's QEvent::ToolTip. False if the widget has none.
  static bool showFor(QWidget& owner, const QEvent& event);

  /// Shows the new text if the widget's tool tip is shown. An empty one hides it.
  static void textChanged(QWidget& owner);

  /// The lines that are shown.
  [[nodiscard]] const QStringList& lines() const { return m_lines; }

protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  explicit ToolTip(QWidget& owner);

  [[nodiscard]] static ToolTip* shownFor(const QWidget& owner);
  void fit();

  QPointer<QWidget> m_owner;
  QPoint m_place; // in the window
  QStringList m_lines;
};

} // namespace tidewell
