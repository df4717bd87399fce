#pragma once

#include <QScrollArea>

namespace tidewell {

/// Scrolls its content vertically and gives it the available width. Accepts the keyboard focus if
/// there is something to scroll.
class ScrollPane final : public QScrollArea {
  Q_OBJECT

public:
  /// In pixels. The space is always reserved, so that nothing moves when the bar appears.
  static constexpr int barWidth = 10;

  ScrollPane(QWidget* content, const QString& name, QWidget* parent = nullptr);

  /// Scrolls the pane that the widget is in, if any, until all of the widget shows.
  static void reveal(QWidget& widget);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void rangeChanged(int minimum, int maximum);
};

} // namespace tidewell
