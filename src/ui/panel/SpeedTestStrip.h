#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/ViewTime.h"

#include <QWidget>

#include <optional>

namespace tidewell {

class ResultLine;
class RunningLine;

/// The line about the speed test: that it runs, else its last result, else nothing, and then it
/// takes no room. Main thread.
class SpeedTestStrip final : public QWidget {
  Q_OBJECT

public:
  SpeedTestStrip(const ViewTime& time, QWidget* parent);

  void setState(bool isRunning, const std::optional<SpeedTestResult>& result);

private:
  // Children, of which one is shown.
  RunningLine* m_running;
  ResultLine* m_result;
};

} // namespace tidewell
