#include "app/WindowsProcess.h"

#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/process/SocketChild.h"

#include <utility>

namespace tidewell {
namespace {

// A process that crashes this often without a user request would do so forever.
constexpr int mostCrashes = 3;

} // namespace

WindowsProcess::WindowsProcess(EventLoop& loop, std::string executable, Seconds answerLimit)
    : m_loop(loop), m_executable(std::move(executable)), m_answerLimit(answerLimit) {}

WindowsProcess::~WindowsProcess() {
  if (m_child) {
    m_child->send(messageOf(WindowRequest{WindowRequest::Kind::quit, {}, {}, {}}));
  }
}

void WindowsProcess::ask(const WindowRequest& request) {
  m_crashes = 0;
  if (!m_child && !start()) {
    return;
  }
  m_last[request.kind] = request;
  m_unanswered.push_back(request);
  m_child->send(messageOf(request));
  if (m_unanswered.size() == 1) { // a running deadline is not postponed
    watchAnswer();
  }
}

bool WindowsProcess::start() {
  m_child = SocketChild::start(m_loop, m_executable,
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
    watchAnswer();
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
  if ((wanted.empty() && unanswered.empty()) || ++m_crashes > mostCrashes || !start()) {
    return;
  }
  for (auto& [kind, request] : wanted) {
    request.kind = kind;
    m_unanswered.push_back(request);
  }
  m_unanswered.insert(m_unanswered.end(), unanswered.begin(), unanswered.end());
  for (const WindowRequest& request : m_unanswered) {
    m_child->send(messageOf(request));
  }
  watchAnswer();
}

void WindowsProcess::watchAnswer() {
  m_answerDue.reset();
  if (!m_unanswered.empty()) {
    m_answerDue = m_loop.repeat(m_answerLimit, 0.0, [this] {
      if (m_child) {
        m_child->kill();
      }
    });
  }
}

} // namespace tidewell
