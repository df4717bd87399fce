#pragma once

#include "control/BusLoop.h"
#include "control/CommandLine.h"
#include "control/ResidentWatch.h"

#include <string>

namespace tidewell {

/// Runs the commands that need the bus.
class Control {
public:
  explicit Control(ControlCommand command) : m_command(std::move(command)) {}

  /// Runs the command to its end. Complaints go to standard error.
  [[nodiscard]] ExitStatus run();

private:
  using Outcome = BusLoop::Outcome;

  [[nodiscard]] ExitStatus runOnBus();
  [[nodiscard]] bool start();
  [[nodiscard]] ExitStatus absence(Outcome outcome) const;
  [[nodiscard]] ExitStatus runVerb();
  [[nodiscard]] ExitStatus follow();
  [[nodiscard]] ExitStatus open();
  [[nodiscard]] ExitStatus quit();
  [[nodiscard]] ExitStatus speedTest();
  [[nodiscard]] ExitStatus speedTestResult() const;
  [[nodiscard]] Outcome awaitPresence(BusLoop::Limit limit);
  [[nodiscard]] Outcome awaitSpeedTest();
  [[nodiscard]] Outcome call(const char* method, bool& isAnswered);

  ControlCommand m_command;
  BusLoop m_loop;
  std::unique_ptr<ResidentWatch> m_watch;
  std::function<void()> m_changed = [] {};
};

/// Prints a line. The status tells whether somebody got it; a reader who has left is no failure.
[[nodiscard]] ExitStatus printLine(const std::string& line);

} // namespace tidewell
