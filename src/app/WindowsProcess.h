#pragma once

#include "base/Scheduler.h"
#include "windowRequests/WindowRequest.h"

#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace tidewell {

class EventLoop;
class SocketChild;

/// Controls the windows' process. It is started on request, exits when it has nothing left to show,
/// and is restarted with the same windows after a crash. Never waits for it.
class WindowsProcess {
public:
  /// A process that leaves a request unanswered for this long has hung and is killed. A cold start
  /// from a slow disk takes less.
  static constexpr Seconds usualAnswerLimit = 10.0;

  /// Requests that may be on their way. Later ones wait until the process has taken some, so that
  /// neither they nor its reports outgrow the socket, which holds some two hundred messages.
  static constexpr std::size_t mostUnanswered = 50;

  /// Borrows the loop. `executable` is an absolute path; if it does not exist, nothing is shown.
  /// `resident` is the absolute path of this program, which the windows register to start at login.
  WindowsProcess(EventLoop& loop, std::string executable, std::string resident,
                 Seconds answerLimit = usualAnswerLimit);
  WindowsProcess(WindowsProcess&&) = delete;
  /// Asks the process to end.
  ~WindowsProcess();

  /// Sends a request to the process, starting it if necessary. Of requests that wait, only the last
  /// one of each kind is kept.
  void ask(const WindowRequest& request);

  /// Whether the process exists now.
  [[nodiscard]] bool isRunning() const { return m_child != nullptr; }

private:
  [[nodiscard]] bool start();
  void heard(std::string_view message);
  void ended(bool orderly);
  void restart();
  void sendWaiting();
  void watchAnswer();

  EventLoop& m_loop;
  std::string m_executable;
  std::string m_resident;
  Seconds m_answerLimit;
  std::unique_ptr<SocketChild> m_child;
  std::deque<WindowRequest> m_unanswered;              // sent, oldest first
  std::deque<WindowRequest> m_waiting;                 // not sent yet, oldest first
  std::map<WindowRequest::Kind, WindowRequest> m_last; // the last of each window
  std::map<WindowRequest::Kind, WindowRequest> m_open; // the requests of the open windows
  int m_crashes = 0;                                   // since the user's last request
  std::unique_ptr<Timer> m_answerDue;
};

} // namespace tidewell
