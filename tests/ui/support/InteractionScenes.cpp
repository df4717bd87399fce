#include "FakeTime.h"
#include "Scene.h"
#include "Sheet.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/RangeSelector.h"
#include "ui/detail/DetailWindowView.h"
#include "ui/detail/SpeedTestGroup.h"

#include <QHoverEvent>
#include <QMouseEvent>

namespace tidewell::test {

namespace {

// Tabs and ranges, one line for each: at rest, the chosen one and another under the pointer, and
// pressed.
class States final : public QWidget {
public:
  States() {
    for (int state = 0; state < 5; ++state) {
      auto bar = std::make_unique<DetailTabBar>(QStringList{"Overview", "Processes"}, nullptr);
      auto ranges = std::make_unique<RangeSelector>(nullptr);
      bar->resize(bar->sizeHint());
      ranges->resize(ranges->sizeHint());
      arrange(state, *bar, *ranges);
      m_lines.push_back({std::move(bar), std::move(ranges)});
    }
    resize(344, lineHeight * static_cast<int>(m_lines.size()) + 8);
  }

protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.fillRect(rect(), TWColor::surface);
    int y = 8;
    for (const Line& line : m_lines) {
      line.bar->render(&painter, {8, y}, {}, QWidget::DrawChildren);
      line.ranges->render(&painter, {176, y}, {}, QWidget::DrawChildren);
      y += lineHeight;
    }
  }

private:
  struct Line {
    std::unique_ptr<DetailTabBar> bar;
    std::unique_ptr<RangeSelector> ranges;
  };
  static constexpr int lineHeight = 34;

  static void arrange(int state, DetailTabBar& bar, RangeSelector& ranges) {
    if (state == 0) {
      return;
    }
    const bool isOther = state == 2 || state == 4;
    const QPointF point = bar.tabRect(isOther ? 1 : 0).center();
    RangeButton& range = *ranges.findChildren<RangeButton*>()[isOther ? 2 : 1];
    range.setAttribute(Qt::WA_UnderMouse);
    QHoverEvent hover(QEvent::HoverEnter, point, point, QPointF(-1.0, -1.0));
    QCoreApplication::sendEvent(&bar, &hover);
    if (state > 2) {
      range.setDown(true);
      QMouseEvent press(QEvent::MouseButtonPress, point, point, Qt::LeftButton, Qt::LeftButton, {});
      QCoreApplication::sendEvent(&bar, &press);
    }
  }

  std::vector<Line> m_lines;
};

std::shared_ptr<QWidget> states() {
  auto sheet = std::make_shared<States>();
  sheet->show();
  Panel::settle();
  return sheet;
}

// A value that is selected, below another.
std::shared_ptr<QWidget> selection() {
  auto sheet = std::make_shared<Sheet>(QSize(320, 72));
  ValueRow* row = nullptr;
  for (const int y : {6, 36}) {
    row = sheet->place(new ValueRow("Address", {.padding = 6, .lineThickness = 1}, nullptr),
                       QRect(8, y, 304, 30));
    row->setValue("192.168.1.20", TWColor::text);
  }
  row->setFocusPolicy(Qt::StrongFocus);
  shown(sheet);
  sheet->activateWindow();
  row->setFocus();
  Panel::settle();
  return sheet;
}

std::shared_ptr<QWidget> stopped() {
  auto sheet = std::make_shared<Sheet>(QSize(460, 76));
  auto* const group = new SpeedTestGroup([] {}, FakeTime().time(), nullptr);
  group->setState(SpeedTestState(), false);
  sheet->place(group, QRect(8, 6, 444, 64));
  return shown(sheet);
}

// Both charts with the pointer over them, once near the right edge.
std::shared_ptr<QWidget> readings() {
  auto sheet = std::make_shared<Sheet>(QSize(640, 366));
  auto* const bandwidth = sheet->place(new BandwidthChart, QRect(8, 4, 624, 200));
  auto* const latency = sheet->place(new LatencyChart, QRect(8, 210, 624, 150));
  bandwidth->setSnapshots(evening(300));
  latency->setSnapshots(evening(300));
  shown(sheet);
  for (const auto& [chart, x] : {std::pair<QWidget*, double>(bandwidth, 180.0), {latency, 520.0}}) {
    QMouseEvent move(QEvent::MouseMove, QPointF(x, 60.0), chart->mapToGlobal(QPointF(x, 60.0)),
                     Qt::NoButton, {}, {});
    QCoreApplication::sendEvent(chart, &move);
  }
  return sheet;
}

} // namespace

std::vector<Scene> interactionScenes() {
  return {
      {"states", states},
      {"selection", selection},
      {"speedTestStopped", stopped},
      {"chartReadings", readings},
  };
}

} // namespace tidewell::test
