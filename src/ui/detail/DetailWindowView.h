#pragma once

#include "ui/components/SpokenGroup.h"
#include "ui/components/ViewTime.h"
#include "ui/detail/DetailSources.h"
#include "ui/detail/TimeRange.h"

#include <functional>

class QStackedWidget;

namespace tidewell {

class DetailTabBar;
class OverviewTab;

/// The details: four tabs and the selected one's content, which scrolls. A window or a part of one.
/// Made anew for every opening. Main thread.
class DetailWindowView final : public SpokenGroup {
  Q_OBJECT

public:
  using TimeRange = tidewell::TimeRange;

  /// The size to open with and the least one, in device-independent pixels.
  static constexpr QSize defaultSize{680, 520};

  /// `runSpeedTest` is called on the main thread, and only while no test runs.
  DetailWindowView(DetailSources sources, std::function<void()> runSpeedTest,
                   const ViewTime& time = ViewTime::real(), QWidget* parent = nullptr);
  ~DetailWindowView() override;

  /// Which tab is shown, from 0 to 3.
  [[nodiscard]] int selectedTab() const;
  [[nodiscard]] TimeRange timeRange() const;

  [[nodiscard]] QSize sizeHint() const override { return defaultSize; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void layOut();
  void addTab(QWidget* content);

  // Children.
  DetailTabBar* m_tabs;
  QStackedWidget* m_stack;
  OverviewTab* m_overview;
};

} // namespace tidewell
