#pragma once

#include "FakeTime.h"
#include "connectivity/MonitorState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"
#include "ui/charts/MiniGraphView.h"
#include "ui/components/Buttons.h"
#include "ui/components/StatCell.h"
#include "ui/components/StatusBadge.h"
#include "ui/components/ValueRow.h"
#include "ui/panel/PopoverView.h"
#include "ui/panel/SpeedTestStrip.h"

#include <QCoreApplication>

#include <memory>
#include <string>
#include <vector>

namespace tidewell::test {

/// Samples of these rates, in both directions.
inline SnapshotList samples(const std::vector<std::int64_t>& rates) {
  SnapshotList list;
  for (const std::int64_t rate : rates) {
    list.push_back(std::make_shared<const NetworkSnapshot>(1e9, rate, rate / 2, 20.0, 1.0, 0.0));
  }
  return list;
}

/// A panel over states that a test fills by hand.
struct Panel {
  /// What its buttons asked for.
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

  /// Makes the view anew, as for another opening.
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

  /// Lets the layout and the repaints that are due happen.
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
