#pragma once

#include "FakeTime.h"
#include "connectivity/MonitorState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"
#include "ui/charts/MiniGraphView.h"
#include "ui/components/Buttons.h"
#include "ui/components/StatCell.h"
#include "ui/components/StatusBadge.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/panel/PopoverView.h"
#include "ui/panel/SpeedTestStrip.h"

#include <QCoreApplication>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace tidewell::test {

using Texts = std::vector<std::string>;

inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double infinite = std::numeric_limits<double>::infinity();

/// The text of each element.
template <class Range, class Text> Texts textsOf(const Range& range, Text&& text) {
  Texts texts;
  for (const auto& element : range) {
    texts.push_back(text(element));
  }
  return texts;
}

/// The visible lines of text in a widget, in the order of creation.
inline Texts linesIn(const QWidget& widget) {
  Texts texts;
  for (const TextLine* line : widget.findChildren<TextLine*>()) {
    if (line->isVisible()) {
      texts.push_back(line->text().toStdString());
    }
  }
  return texts;
}

/// "label|value|unit".
inline std::string textOf(const StatCell& cell) {
  const StatFigure& figure = cell.figure();
  return (figure.label + u'|' + figure.value + u'|' + figure.unit).toStdString();
}

/// Samples with these download rates. The upload rates are half of them.
inline SnapshotList samples(const std::vector<std::int64_t>& rates) {
  SnapshotList list;
  for (const std::int64_t rate : rates) {
    list.push_back(std::make_shared<const NetworkSnapshot>(1e9, rate, rate / 2, 20.0, 1.0, 0.0));
  }
  return list;
}

/// The panel, with states that a test sets.
struct Panel {
  /// Counts the actions of its buttons.
  struct Calls {
    int openDetail = 0;
    int openSettings = 0;
    int runSpeedTest = 0;
    int quit = 0;
    std::vector<std::string> copied;
  };

  SamplerState sampler;
  MonitorState monitor;
  SpeedTestState speedTest;
  Calls calls;
  FakeTime time;
  std::unique_ptr<PopoverView> view;

  /// Creates the view, as for each opening.
  void open(Backdrop backdrop = Backdrop::translucent) {
    view = std::make_unique<PopoverView>(
        PanelSources{sampler, monitor, speedTest},
        PanelActions{[this] { ++calls.openDetail; }, [this] { ++calls.openSettings; },
                     [this] { ++calls.runSpeedTest; }, [this] { ++calls.quit; },
                     [this](const std::string& text) { calls.copied.push_back(text); }},
        backdrop, time.time());
    view->show();
    settle();
  }

  /// Completes pending layouts and repaints.
  static void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
  }

  [[nodiscard]] StatCell& cell(int index) const {
    return *view->findChildren<StatCell*>().at(index);
  }
  [[nodiscard]] ValueRow& row(int index) const {
    return *view->findChildren<ValueRow*>().at(index);
  }
  [[nodiscard]] ActionButton& button(int index) const {
    return *view->findChildren<ActionButton*>().at(index);
  }
  template <class Widget> [[nodiscard]] Widget& only() const {
    return *view->findChildren<Widget*>().at(0);
  }
};

} // namespace tidewell::test
