#pragma once

#include "base/Observers.h"
#include "ui/components/ViewTime.h"
#include "ui/detail/DetailWindowView.h"

#include <QWidget>

#include <vector>

namespace tidewell {

class ConnectionGroup;
class PerformanceGroup;
class SpeedTestGroup;
class TextLine;

/// Connection, performance and speed test.
class DiagnosticsTab final : public QWidget {
  Q_OBJECT

public:
  DiagnosticsTab(DetailSources sources, const DetailActions& actions, const ViewTime& time,
                 QWidget* parent = nullptr);

private:
  void layOut();
  void observe();
  void showSpeedTest();

  DetailSources m_sources;
  // Children, in reading order.
  TextLine* m_title;
  ConnectionGroup* m_connection;
  PerformanceGroup* m_performance;
  SpeedTestGroup* m_speedTest;
  // Destroyed before the children.
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
