#pragma once

#include "Dice.h"
#include "Findings.h"
#include "VirtualProcesses.h"
#include "platform/linux/loop/EventLoop.h"
#include "windowRequests/WindowRequest.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tidewell::test {

/// Plays the windows' process: takes requests, opens and closes windows, exits in the end; or
/// crashes, hangs, reports falsely, cannot be started. The rules: one process at a time, no request
/// that nobody made, no request lost on a working process, and a hung one is killed within ten
/// seconds whatever else is requested.
class WindowsProgram {
public:
  WindowsProgram(const VirtualScheduler& scheduler, EventLoop& world, Dice& dice,
                 Findings& findings)
      : m_scheduler(scheduler), m_world(world), m_dice(dice), m_findings(findings) {}

  /// Plays the process; false if it cannot be started.
  [[nodiscard]] bool play(const VirtualProcesses::Pointer& process);
  /// Somebody makes a request.
  void asked(const WindowRequest& request);
  /// The program has ended; its windows' process then exits.
  void release();

  /// Forgets all requests; the program must not repeat them.
  void forget() { m_known.clear(); }

  /// From now on nothing goes wrong. Ends a process that hangs on requests it has falsely answered,
  /// which would otherwise be left alone until the next request.
  void calmDown();

  void check();
  /// Checks that the windows' process shows the item exactly if no panel has taken it. Call it when
  /// that has not changed for a while.
  void checkItem(bool isTaken);

  /// Probabilities for each request.
  double crashes = 0.0;
  double hangs = 0.0;
  double lies = 0.0;
  double cannotStart = 0.0;

  [[nodiscard]] bool isRunning() const { return m_process && m_process->isAlive; }
  [[nodiscard]] int starts() const { return m_starts; }
  [[nodiscard]] int requests() const { return m_requests; }
  [[nodiscard]] int kills() const { return m_kills; }

private:
  void read();
  void take(const WindowRequest& request);
  void report(const std::string& message);
  void lie();
  void close(WindowRequest::Kind window);
  void leaveSoon();
  void ended();

  const VirtualScheduler& m_scheduler;
  EventLoop& m_world;
  Dice& m_dice;
  Findings& m_findings;
  VirtualProcesses::Pointer m_process;
  std::unique_ptr<FdWatch> m_watch;
  std::set<WindowRequest::Kind> m_windows; // open windows
  std::unique_ptr<Timer> m_leaving;
  std::optional<Ticks> m_hungSince;
  bool m_hasLeft = false; // whether the last process exited by its own decision
  bool m_hasLied = false; // in this life of the program
  std::set<std::string> m_known;
  std::optional<std::string> m_missing;
  int m_endings = 0; // since the last request
  std::optional<bool> m_isItemOurs;
  int m_starts = 0;
  int m_requests = 0;
  int m_kills = 0;
};

} // namespace tidewell::test
