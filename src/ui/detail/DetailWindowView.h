#pragma once

#include "base/Published.h"
#include "ui/charts/RangeSelector.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/FocusMark.h"
#include "ui/components/ViewTime.h"

#include <QTabBar>

#include <functional>
#include <string>

class QStackedWidget;

namespace tidewell {

class OverviewTab;
struct MonitorState;
struct SamplerState;
struct SpeedTestState;
struct TrackerState;

/// The states that the details show. They outlive the views.
struct DetailSources {
  SamplerState& sampler;
  MonitorState& monitor;
  TrackerState& tracker;
  SpeedTestState& speedTest;
  /// Whether the resident runs; while it does not, the states stay as they were.
  Published<bool>& isThere;
};

/// What the user starts in the details.
struct DetailActions {
  /// Called only while no test is running.
  std::function<void()> runSpeedTest;
  /// Puts the text on the clipboard.
  std::function<void(const std::string&)> copy;
};

/// Titles side by side, with a bar under the selected one. Left and Right change the selection.
/// The tabs answer to hover and press like buttons.
class DetailTabBar final : public QTabBar {
  Q_OBJECT

public:
  DetailTabBar(const QStringList& titles, QWidget* parent);

protected:
  [[nodiscard]] QSize tabSizeHint(int index) const override;
  [[nodiscard]] QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  /// Ignored, so that the page scrolls.
  void wheelEvent(QWheelEvent* event) override;

private:
  void paintTab(QPainter& painter, int index) const;

  FocusMark* m_focusMark; // a child
};

/// The details: four tabs and the scrollable content of the selected one. Created for each opening.
class DetailWindowView final : public SpokenGroup {
  Q_OBJECT

public:
  using TimeRange = tidewell::TimeRange;

  /// The initial and minimum size, in device-independent pixels.
  static constexpr QSize defaultSize{680, 520};

  DetailWindowView(DetailSources sources, const DetailActions& actions,
                   const ViewTime& time = ViewTime::real(), QWidget* parent = nullptr);
  ~DetailWindowView() override;

  /// The selected tab, from 0 to 3.
  [[nodiscard]] int selectedTab() const;
  [[nodiscard]] TimeRange timeRange() const;

  [[nodiscard]] QSize sizeHint() const override { return defaultSize; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void layOut();
  void addShortcuts();
  void select(int tab);
  void addTab(QWidget* content);

  // Children.
  DetailTabBar* m_tabs;
  QStackedWidget* m_stack;
  OverviewTab* m_overview;
};

} // namespace tidewell
