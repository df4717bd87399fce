#pragma once

#include "base/Observers.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ViewTime.h"
#include "ui/panel/ActionBar.h"

#include <vector>

class QPainter;
class QRect;

namespace tidewell {

class ActionBar;
class ConnectionSection;
class Divider;
class MiniGraphView;
class SpeedTestStrip;
class StatsGrid;
class ThroughputHero;
struct MonitorState;
struct SamplerState;
struct SpeedTestState;

/// The panel's background.
enum class Backdrop {
  /// Slightly translucent, with rounded corners. The window needs an alpha channel.
  translucent,
  /// Opaque, with square corners, for displays without compositing.
  opaque
};

/// Radius of a translucent panel's corners, in pixels.
constexpr int panelRadius = 12;

/// Paints the panel's background and outline.
void paintBackdrop(QPainter& painter, const QRect& panel, Backdrop backdrop);

/// The states that the panel shows. They outlive the view. Write `SamplerState::isConnected` before
/// `MonitorState::isConnected`, which the view observes.
struct PanelSources {
  SamplerState& sampler;
  MonitorState& monitor;
  SpeedTestState& speedTest;
};

/// The panel: 340 pixels wide and as high as its content, which changes with the speed test.
/// Created for each opening.
class PopoverView final : public SpokenGroup {
  Q_OBJECT

public:
  /// In device-independent pixels.
  static constexpr int panelWidth = 340;

  PopoverView(PanelSources sources, PanelActions actions, Backdrop backdrop,
              const ViewTime& time = ViewTime::real(), QWidget* parent = nullptr);
  ~PopoverView() override;

  /// Whether an address was copied within the last 1.5 seconds.
  [[nodiscard]] bool copiedIP() const { return m_copiedIP; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  void layOut();
  void observeSampler();
  void observeMonitor();
  void observeSpeedTest();
  void connectActions();
  void showStats();
  void showStatus();
  void showSpeedTest();
  void startSpeedTest() const;
  void copyAddress();
  void setCopiedIP(bool copied);

  PanelSources m_sources;
  PanelActions m_actions;
  Backdrop m_backdrop;
  ViewTime m_time;
  bool m_copiedIP = false;
  // Children, in reading order.
  ThroughputHero* m_hero;
  StatsGrid* m_stats;
  MiniGraphView* m_graph;
  ConnectionSection* m_connection;
  SpeedTestStrip* m_strip;
  Divider* m_divider;
  ActionBar* m_actionBar;
  // Destroyed before the children.
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
