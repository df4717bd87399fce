#include "FakeTime.h"
#include "Panel.h"
#include "Scene.h"
#include "Sheet.h"
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

std::shared_ptr<QWidget> statCells() {
  auto sheet = std::make_shared<Sheet>(QSize(330, 144));
  int index = 0;
  for (const StatFigure& figure : {StatFigure{"Latency", "24", "ms", TWColor::text},
                                   StatFigure{"packet loss", "12.0", "%", TWColor::yellow},
                                   StatFigure{"Upload", "1.2 MB/s", "", TWColor::text},
                                   StatFigure{"Upload", "4611686018.4 GB/s", "", TWColor::green}}) {
    sheet->place(new StatCell, QRect(4 + index % 2 * 162, 4 + index / 2 * 70, 158, 66))
        ->setFigure(figure);
    ++index;
  }
  return shown(sheet);
}

std::shared_ptr<QWidget> badges() {
  auto sheet = std::make_shared<Sheet>(QSize(140, 118));
  int y = 6;
  for (const auto status : {NetworkStatus::excellent, NetworkStatus::good, NetworkStatus::degraded,
                            NetworkStatus::down}) {
    auto* const badge = new StatusBadge(FakeTime().time().now, sheet.get());
    badge->setStatus(status);
    badge->move(8, y);
    y += 28;
  }
  return shown(sheet);
}

// The dot at the start, in the middle and at the dim end of its fade.
std::shared_ptr<QWidget> pulse() {
  auto sheet = std::make_shared<Sheet>(QSize(46, 14));
  shown(sheet);
  int x = 4;
  for (const double seconds : {0.0, 0.5, 1.0}) {
    FakeTime time;
    auto* const dot = new PulseDot(time.time().now, sheet.get());
    dot->setColors(TWColor::green, TWColor::greenDim);
    dot->move(x, 4);
    dot->show();
    time.advance(seconds);
    dot->pulse().advance();
    x += 16;
  }
  return sheet;
}

std::shared_ptr<QWidget> spinner() {
  auto sheet = std::make_shared<Sheet>(QSize(44, 20));
  shown(sheet);
  int x = 2;
  for (const double seconds : {0.0, 0.3}) {
    FakeTime time;
    auto* const spinner = new Spinner(time.time().now, sheet.get());
    spinner->move(x, 2);
    spinner->show(); // children of a visible widget are hidden at first
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
    sheet->place(new ValueRow("Network", {.padding = 6}, nullptr), QRect(0, y, 300, 29))
        ->setValue(value, TWColor::text);
    y += 29;
  }
  return shown(sheet);
}

// A normal, a pressed and a focused button.
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
  sheet->place(new MiniGraphView, QRect(10, 6, 300, 86))->setSnapshots(snapshots);
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
    const TextStyle style{.font = font, .color = TWColor::text, .isTabular = true};
    sheet->place(new TextLine(style), QRect(6, y, 320, 25))->setText(text);
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
