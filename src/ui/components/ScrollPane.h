#pragma once

#include <QScrollArea>

namespace tidewell {

/// Scrolls its content vertically, and lets it stretch to the width that there is. Reached with the
/// keyboard when there is something to scroll. Main thread.
class ScrollPane final : public QScrollArea {
  Q_OBJECT

public:
  /// In pixels; the room is always kept, so that nothing moves when the bar appears.
  static constexpr int barWidth = 10;

  ScrollPane(QWidget* content, const QString& name, QWidget* parent = nullptr);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void rangeChanged(int minimum, int maximum);
};

} // namespace tidewell
