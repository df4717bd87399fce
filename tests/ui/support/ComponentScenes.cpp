#include "FakeTime.h"
#include "Panel.h"
#include "Scene.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/FittedText.h"
#include "ui/components/PulseAnimation.h"
#include "ui/components/Spinner.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

namespace tidewell::test {

namespace {

// A dark ground to see a component on.
class Sheet final : public QWidget {
public:
  explicit Sheet(QSize size) { resize(size); }

  template <class Widget> Widget* place(Widget* widget, const QRect& box) {
    widget->setParent(this);
    widget->setGeometry(box);
    return widget;
  }
  std::function<void(QPainter&)> paint;

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), TWColor::surface);
    painter.setRenderHint(QPainter::Antialiasing);
    if (paint) {
      paint(painter);
    }
  }
};

std::shared_ptr<QWidget> shown(std::shared_ptr<Sheet> sheet) {
  sheet->show();
  Panel::settle();
  return sheet;
}

std::shared_ptr<QWidget> statCells() {
  auto sheet = std::make_shared<Sheet>(QSize(330, 144));
  const std::vector<StatFigure> figures = {
      {"Latency", "24", "ms", TWColor::text},
      {"packet loss", "12.0", "%", TWColor::yellow},
      {"Upload", "1.2 MB/s", "", TWColor::text},
      {"Upload", "4611686018.4 GB/s", "", TWColor::green},
  };
  int index = 0;
  for (const StatFigure& figure : figures) {
    auto* const cell = new StatCell;
    cell->setFigure(figure);
    sheet->place(cell, QRect(4 + index % 2 * 162, 4 + index / 2 * 70, 158, 66));
    ++index;
  }
  return shown(sheet);
}

std::shared_ptr<QWidget> badges() {
  auto sheet = std::make_shared<Sheet>(QSize(140, 118));
  int y = 6;
  for (const auto status : {NetworkStatus::excellent, NetworkStatus::good, NetworkStatus::degraded,
                            NetworkStatus::down}) {
    auto* const badge = new StatusBadge(FakeTime().time().now);
    badge->setStatus(status);
    badge->setParent(sheet.get());
    badge->move(8, y);
    y += 28;
  }
  return shown(sheet);
}

// The dot at the beginning, in the middle and at the dim end of a beat.
std::shared_ptr<QWidget> pulse() {
  auto sheet = std::make_shared<Sheet>(QSize(46, 14));
  int x = 4;
  for (const double seconds : {0.0, 0.5, 1.0}) {
    FakeTime time;
    auto* const dot = new PulseDot(time.time().now, sheet.get());
    dot->setColors(TWColor::green, TWColor::greenDim);
    dot->move(x, 4);
    shown(sheet);
    time.advance(seconds);
    dot->pulse().advance();
    x += 16;
  }
  return sheet;
}

std::shared_ptr<QWidget> spinner() {
  auto sheet = std::make_shared<Sheet>(QSize(44, 20));
  int x = 2;
  for (const double seconds : {0.0, 0.3}) {
    FakeTime time;
    auto* const spinner = new Spinner(time.time().now, sheet.get());
    spinner->move(x, 2);
    shown(sheet);
    time.advance(seconds);
    spinner->advance();
    x += 22;
  }
  return sheet;
}

std::shared_ptr<QWidget> icons() {
  auto sheet = std::make_shared<Sheet>(QSize(199, 19));
  sheet->paint = [](QPainter& painter) {
    int x = 4;
    for (const Icon icon :
         {Icon::bolt, Icon::hourglass, Icon::copy, Icon::checkMark, Icon::barChart, Icon::gear,
          Icon::power, Icon::bell, Icon::drive, Icon::link}) {
      drawIcon(painter, icon, QPointF(x, 4.0), TWColor::text);
      x += 20;
    }
  };
  return shown(sheet);
}

std::shared_ptr<QWidget> rows() {
  auto sheet = std::make_shared<Sheet>(QSize(300, 87));
  int y = 0;
  for (const char* const value :
       {"Riverside", "--", "A network whose name goes on and on and on and on until its end"}) {
    auto* const row = new ValueRow(QStringLiteral("Network"), {.padding = 6}, nullptr);
    row->setValue(QString::fromUtf8(value), TWColor::text);
    sheet->place(row, QRect(0, y, 300, 29));
    y += 29;
  }
  return shown(sheet);
}

// At rest, pressed, and reached with the keyboard.
std::shared_ptr<QWidget> buttons() {
  auto sheet = std::make_shared<Sheet>(QSize(206, 48));
  sheet->place(new ActionButton(Icon::bolt, "Speed Test", nullptr), QRect(0, 0, 67, 47));
  sheet->place(new ActionButton(Icon::gear, "Settings", nullptr), QRect(68, 0, 67, 47))
      ->setDown(true);
  auto* const reached =
      sheet->place(new ActionButton(Icon::copy, "Copy IP", nullptr), QRect(136, 0, 67, 47));
  Divider::vertical(28, sheet.get())->move(67, 9);
  shown(sheet);
  sheet->activateWindow();
  reached->setFocus();
  Panel::settle();
  return sheet;
}

std::shared_ptr<QWidget> graph(const SnapshotList& snapshots) {
  auto sheet = std::make_shared<Sheet>(QSize(320, 100));
  auto* const view = new MiniGraphView;
  view->setSnapshots(snapshots);
  sheet->place(view, QRect(10, 6, 300, 86));
  return shown(sheet);
}

std::shared_ptr<QWidget> type() {
  auto sheet = std::make_shared<Sheet>(QSize(330, 186));
  const std::vector<std::pair<const char*, QFont>> styles = {
      {"statValue 0123456789", TWFont::statValue()},
      {"monoSmall 0123456789 -- ::1 www", TWFont::monoSmall()},
      {"monoTiny 0123456789", TWFont::monoTiny()},
      {"label 0123456789", TWFont::label()},
      {"body 0123456789", TWFont::body()},
      {"caption 0123456789", TWFont::caption()},
      {"sectionTitle 0123456789", TWFont::sectionTitle()}};
  int y = 4;
  for (const auto& [text, font] : styles) {
    TextStyle style{font, TWColor::text};
    style.isTabular = true;
    auto* const line = new TextLine(style);
    line->setText(text);
    sheet->place(line, QRect(6, y, 320, 25));
    y += 25;
  }
  return shown(sheet);
}

} // namespace

std::vector<Scene> componentScenes() {
  return {
      {"statCells", statCells},
      {"badges", badges},
      {"pulse", pulse},
      {"spinner", spinner},
      {"icons", icons},
      {"rows", rows},
      {"buttons", buttons},
      {"type", type},
      {"graph-empty", [] { return graph({}); }},
      {"graph-one", [] { return graph(samples({1'250'000})); }},
      {"graph-few",
       [] {
         return graph(samples({0, 2'000'000, 1'000'000, 4'000'000, 0}));
       }},
  };
}

} // namespace tidewell::test
