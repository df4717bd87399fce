#pragma once

#include <QTabBar>

namespace tidewell {

/// Titles side by side, with a bar under the selected one. Left and Right select another. Main
/// thread.
class DetailTabBar final : public QTabBar {
  Q_OBJECT

public:
  DetailTabBar(const QStringList& titles, QWidget* parent);

protected:
  [[nodiscard]] QSize tabSizeHint(int index) const override;
  [[nodiscard]] QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
  void paintEvent(QPaintEvent* event) override;
  /// Goes on to what scrolls.
  void wheelEvent(QWheelEvent* event) override;

private:
  void paintTab(QPainter& painter, int index) const;
};

} // namespace tidewell
