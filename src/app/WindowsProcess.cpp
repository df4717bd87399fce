#include "app/WindowsProcess.h"

#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/process/SocketChild.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tidewell {
namespace {

// A process that crashes this often without a user request would do so forever.
constexpr int mostCrashes = 3;

} // namespace

WindowsProcess::WindowsProcess(EventLoop& loop, std::string executable, std::string resident,
                               Seconds answerLimit)
    : m_loop(loop), m_executable(std::move(executable)), m_resident(std::move(resident)),
      m_answerLimit(answerLimit) {}

WindowsProcess::~WindowsProcess() {
  if (m_child) {
    // If it is not sent, the end of the socket says the same, or the process hangs.
    static_cast<void>(m_child->send(messageOf({WindowRequest::Kind::quit, {}, {}, {}})));
  }
}

void WindowsProcess::ask(const WindowRequest& request) {
  m_crashes = 0;
  if (!m_child && !start()) {
    return;
  }
  m_last[request.kind] = request;
  std::erase_if(m_waiting, [&](const auto& waiting) { return waiting.kind == request.kind; });
  m_waiting.push_back(request);
  sendWaiting();
}

void WindowsProcess::sendWaiting() {
  while (!m_waiting.empty() && m_unanswered.size() < mostUnanswered &&
         m_child->send(messageOf(m_waiting.front()))) {
    m_unanswered.push_back(std::move(m_waiting.front()));
    m_waiting.pop_front();
  }
  if (!m_answerDue) { // a running deadline is not postponed
    watchAnswer();
  }
}

bool WindowsProcess::start() {
  m_child = SocketChild::start(m_loop, m_executable, {std::string(residentOption) + m_resident},
                               {[this](std::string_view message) { heard(message); },
                                [this](bool orderly) { ended(orderly); }});
  return m_child != nullptr;
}

void WindowsProcess::heard(std::string_view message) {
  const auto report = parseWindowReport(message);
  if (!report) {
    return;
  }
  switch (report->kind) {
  case WindowReport::Kind::taken:
    if (!m_unanswered.empty()) {
      m_unanswered.pop_front();
    }
    m_answerDue.reset();
    sendWaiting();
    break;
  case WindowReport::Kind::opened:
    m_open[report->window] = m_last[report->window];
    break;
  case WindowReport::Kind::closed:
    m_open.erase(report->window);
    break;
  }
}

void WindowsProcess::ended(bool orderly) {
  m_child.reset();
  m_answerDue.reset();
  if (orderly) {
    m_open.clear();
  }
  restart();
}

void WindowsProcess::restart() {
  auto wanted = std::exchange(m_open, {});
  auto unanswered = std::exchange(m_unanswered, {});
  auto waiting = std::exchange(m_waiting, {});
  for (auto& [kind, request] : wanted) {
    request.kind = kind;
    m_waiting.push_back(request);
  }
  std::ranges::move(unanswered, std::back_inserter(m_waiting));
  std::ranges::move(waiting, std::back_inserter(m_waiting));
  if (m_waiting.empty() || ++m_crashes > mostCrashes || !start()) {
    m_waiting.clear();
    return;
  }
  sendWaiting();
}

void WindowsProcess::watchAnswer() {
  if (!m_unanswered.empty()) {
    m_answerDue = m_loop.repeat(m_answerLimit, 0.0, [this] {
      if (m_child) {
        m_child->kill();
      }
    });
  }
}

} // namespace tidewell
