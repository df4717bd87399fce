#pragma once

#include <QPaintEvent>
#include <QWidget>

#include <map>

namespace tidewell::test {

/// Notes which widgets of a tree are painted, and where.
class PaintLog final : public QObject {
public:
  explicit PaintLog(QWidget& root) {
    root.installEventFilter(this);
    for (QWidget* widget : root.findChildren<QWidget*>()) {
      widget->installEventFilter(this);
    }
  }
  [[nodiscard]] QRegion where(const QWidget& widget) const {
    const auto found = m_regions.find(&widget);
    return found == m_regions.end() ? QRegion() : found->second;
  }
  void clear() { m_regions.clear(); }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      m_regions[watched] += dynamic_cast<QPaintEvent*>(event)->region();
    }
    return false;
  }

private:
  std::map<const QObject*, QRegion> m_regions;
};

} // namespace tidewell::test
