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

/// The details over states that a test fills by hand.
struct Details {
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  int testsRun = 0;
  FakeTime time;
  std::unique_ptr<DetailWindowView> view;

  /// Makes the view anew, as for another opening.
  void open(int tab = 0, QSize size = DetailWindowView::defaultSize) {
    view = std::make_unique<DetailWindowView>(
        DetailSources{sampler, monitor, tracker, speedTest}, [this] { ++testsRun; }, time.time());
    view->resize(size);
    view->show();
    tabs().setCurrentIndex(tab);
    Panel::settle();
  }

  [[nodiscard]] QTabBar& tabs() const { return *view->findChild<QTabBar*>(); }
  [[nodiscard]] QScrollArea& pane(int tab) const {
    return *qobject_cast<QScrollArea*>(view->findChild<QStackedWidget*>()->widget(tab));
  }
  /// What a tab has of a kind, in the order of creation.
  template <class Widget> [[nodiscard]] std::vector<Widget*> all(int tab) const {
    const auto found = pane(tab).widget()->findChildren<Widget*>();
    return {found.begin(), found.end()};
  }
  template <class Widget> [[nodiscard]] Widget& only(int tab) const {
    return *all<Widget>(tab).at(0);
  }
};

/// Programs of these names, each half as busy as the one before.
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
