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

/// The windows' process as it comes and goes: takes what it is asked, opens and closes, leaves in
/// the end; or crashes, hangs, tells lies, cannot be started. And the rules: one process at a time,
/// nothing is asked of it that nobody asked, nothing is lost on one that listens, one that hangs is
/// killed within ten seconds whatever else is asked.
class WindowsProgram {
public:
  WindowsProgram(const VirtualScheduler& scheduler, EventLoop& world, Dice& dice,
                 Findings& findings)
      : m_scheduler(scheduler), m_world(world), m_dice(dice), m_findings(findings) {}

  /// Plays the process; false when it cannot be started.
  [[nodiscard]] bool play(const VirtualProcesses::Pointer& process);
  /// Somebody asks for something.
  void asked(const WindowRequest& request);
  /// The program is gone; its windows' process follows by itself.
  void release();

  /// Forgets what was ever asked for, which the program is not to ask again.
  void forget() { m_known.clear(); }

  /// From now on nothing goes wrong. One that hangs on what it has answered beforehand, which is a
  /// lie, would be left alone until somebody asks for something.
  void calmDown();

  void check();
  /// The item must be shown by ourselves, or must not, since a while.
  void checkItem(bool isTaken);

  /// Of each request.
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
  std::set<WindowRequest::Kind> m_windows; // on the screen
  std::unique_ptr<Timer> m_leaving;
  std::optional<Ticks> m_hungSince;
  bool m_hasLeft = false; // the last process, of its own accord
  bool m_hasLied = false; // this life of the program
  std::set<std::string> m_known;
  std::optional<std::string> m_missing;
  int m_endings = 0; // since something was asked
  std::optional<bool> m_isItemOurs;
  int m_starts = 0;
  int m_requests = 0;
  int m_kills = 0;
};

} // namespace tidewell::test
