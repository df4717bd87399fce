#pragma once

#include "ui/charts/RangeSelector.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ViewTime.h"

#include <QTabBar>

#include <functional>

class QStackedWidget;

namespace tidewell {

class OverviewTab;
struct MonitorState;
struct SamplerState;
struct SpeedTestState;
struct TrackerState;

/// What the details show. The states outlive the views.
struct DetailSources {
  SamplerState& sampler;
  MonitorState& monitor;
  TrackerState& tracker;
  SpeedTestState& speedTest;
};

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
