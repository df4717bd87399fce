#pragma once

#include "base/Scheduler.h"
#include "windowRequests/WindowRequest.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tidewell {

class EventLoop;
class SocketChild;

/// The windows' process as the resident sees it: started when something is asked of it, gone when
/// it has nothing to show any more, started again with the same windows when it crashes. Main
/// thread; never waits for it.
class WindowsProcess {
public:
  /// How long a process may leave a request lying until it is taken for hung, and killed. A cold
  /// start from a slow disk takes less.
  static constexpr Seconds usualAnswerLimit = 10.0;

  /// Borrows the loop. `executable` is an absolute path; without such a program nothing is shown.
  WindowsProcess(EventLoop& loop, std::string executable, Seconds answerLimit = usualAnswerLimit);
  WindowsProcess(const WindowsProcess&) = delete;
  WindowsProcess& operator=(const WindowsProcess&) = delete;
  /// Tells the process to end.
  ~WindowsProcess();

  /// Asks something of the process, which is started if need be.
  void ask(const WindowRequest& request);

  /// Whether there is a process now.
  [[nodiscard]] bool isRunning() const { return m_child != nullptr; }

private:
  [[nodiscard]] bool start();
  void heard(std::string_view message);
  void ended(bool orderly);
  void restart();
  void watchAnswer();

  EventLoop& m_loop;
  std::string m_executable;
  Seconds m_answerLimit;
  std::unique_ptr<SocketChild> m_child;
  std::deque<WindowRequest> m_unanswered;              // oldest first
  std::map<WindowRequest::Kind, WindowRequest> m_last; // of each window
  std::map<WindowRequest::Kind, WindowRequest> m_open; // how each open one was asked for
  int m_crashes = 0;                                   // since the user asked last
  std::unique_ptr<Timer> m_answerDue;
};

} // namespace tidewell
