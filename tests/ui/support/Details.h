#pragma once

#include "FakeTime.h"
#include "Panel.h"
#include "processes/TrackerState.h"
#include "ui/detail/DetailWindowView.h"

#include <QScrollArea>
#include <QStackedWidget>
#include <QTabBar>

#include <memory>
#include <string>
#include <vector>

namespace tidewell::test {

/// The details, with states that a test sets.
struct Details {
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  Published<bool> isThere{true};
  int testsRun = 0;
  std::vector<std::string> copied;
  FakeTime time;
  std::unique_ptr<DetailWindowView> view;

  /// Creates the view, as for each opening.
  void open(int tab = 0, QSize size = DetailWindowView::defaultSize) {
    view = std::make_unique<DetailWindowView>(
        DetailSources{sampler, monitor, tracker, speedTest, isThere},
        DetailActions{[this] { ++testsRun; },
                      [this](const std::string& text) { copied.push_back(text); }},
        time.time());
    view->resize(size);
    view->show();
    tabs().setCurrentIndex(tab);
    Panel::settle();
  }

  [[nodiscard]] QTabBar& tabs() const { return *view->findChild<QTabBar*>(); }
  [[nodiscard]] QScrollArea& pane(int tab) const {
    return *qobject_cast<QScrollArea*>(view->findChild<QStackedWidget*>()->widget(tab));
  }
  /// The widgets of this type in a tab, in the order of creation.
  template <class Widget> [[nodiscard]] std::vector<Widget*> all(int tab) const {
    const auto found = pane(tab).widget()->findChildren<Widget*>();
    return {found.begin(), found.end()};
  }
  template <class Widget> [[nodiscard]] Widget& only(int tab) const {
    return *all<Widget>(tab).at(0);
  }
};

/// Processes with these names. Each has half the rate of the previous one.
inline std::vector<ProcessUsage> programs(const std::vector<std::string>& names) {
  std::vector<ProcessUsage> list;
  std::int64_t rate = 4'800'000;
  double share = 0.5;
  for (const std::string& name : names) {
    list.push_back({static_cast<std::int32_t>(1200 + 17 * list.size()), name, rate, rate / 5,
                    rate * 260, share});
    rate /= 2;
    share /= 2.0;
  }
  return list;
}

} // namespace tidewell::test
