#include "WindowsProgram.h"

#include <array>
#include <chrono>
#include <csignal>
#include <utility>

#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tidewell::test {

namespace {

using Kind = WindowRequest::Kind;
using Report = WindowReport::Kind;

constexpr Ticks answerLimit = std::chrono::seconds(10);
constexpr Seconds staysFor = 60.0;
constexpr int mostCrashes = 3;

} // namespace

bool WindowsProgram::play(const VirtualProcesses::Pointer& process) {
  m_findings.require(!isRunning(), "two windows' processes at a time");
  m_findings.require(!m_hasLeft || m_missing || m_hasLied, "windows that nobody asked for");
  m_hasLeft = false;
  if (m_dice.chance(cannotStart)) {
    m_missing.reset();
    return false;
  }
  ++m_starts;
  m_process = process;
  m_hungSince.reset();
  m_windows.clear();
  process->ended = [this, id = process->id] {
    if (m_process && m_process->id == id) {
      ended();
    }
  };
  m_watch = m_world.watch(process->descriptors.at(STDIN_FILENO).get(), EPOLLIN,
                          [this](std::uint32_t) { read(); });
  leaveSoon();
  return true;
}

void WindowsProgram::asked(const WindowRequest& request) {
  ++m_requests;
  m_endings = 0;
  m_missing = messageOf(request);
  m_known.insert(*m_missing);
  if (request.kind == Kind::showItem || request.kind == Kind::hideItem) {
    m_isItemOurs = request.kind == Kind::showItem;
  }
}

void WindowsProgram::release() {
  m_hasLeft = false;
  m_watch.reset();
  m_leaving.reset();
  m_process.reset();
  m_hungSince.reset();
  m_missing.reset();
  m_isItemOurs.reset();
  m_known.clear();
  m_hasLied = false;
}

void WindowsProgram::ended() {
  m_watch.reset();
  m_leaving.reset();
  m_kills += m_hungSince ? 1 : 0;
  m_hungSince.reset();
  ++m_endings;
}

void WindowsProgram::read() {
  std::array<char, longestWindowMessage> piece{};
  const auto size = ::recv(m_process->descriptors.at(STDIN_FILENO).get(), piece.data(),
                           piece.size(), MSG_DONTWAIT);
  if (size <= 0) {
    m_process->exit(0);
    return;
  }
  const std::string message(piece.data(), static_cast<std::size_t>(size));
  const auto request = parseWindowRequest(message);
  m_findings.require(request &&
                         (m_known.contains(message) || m_hasLied || request->kind == Kind::quit),
                     "a request that nobody made", message);
  if (m_missing == message) {
    m_missing.reset();
  }
  if (request) {
    take(*request);
  }
}

void WindowsProgram::take(const WindowRequest& request) {
  if (request.kind == Kind::quit) {
    m_process->exit(0);
    return;
  }
  if (m_dice.chance(hangs)) {
    m_hungSince = m_scheduler.now();
    m_watch.reset();
    m_leaving.reset();
    return;
  }
  if (m_dice.chance(crashes)) {
    m_dice.chance(0.5) ? m_process->die(SIGSEGV) : m_process->exit(1);
    return;
  }
  report(messageOf(WindowReport{Report::taken, {}}));
  if (m_dice.chance(lies)) {
    lie();
  }
  if (isRunning() && request.kind <= Kind::settings) {
    m_windows.insert(request.kind);
    report(messageOf(WindowReport{Report::opened, request.kind}));
    m_world.postAfter(m_dice.magnitude(1.0, 1000.0),
                      [this, id = m_process->id, window = request.kind] {
                        if (isRunning() && m_process->id == id && !m_hungSince) {
                          close(window);
                        }
                      });
  }
  leaveSoon();
}

void WindowsProgram::report(const std::string& message) {
  if (isRunning()) {
    ::send(m_process->descriptors.at(STDIN_FILENO).get(), message.data(), message.size(),
           MSG_NOSIGNAL | MSG_DONTWAIT);
  }
}

void WindowsProgram::lie() {
  m_hasLied = true;
  report(m_dice.oneOf<std::string>({"taken", "closed settings", "opened quit", "opened copy",
                                    "closed nothing", "\xFF\xFE", std::string(4000, 'x'), ""}));
}

void WindowsProgram::close(WindowRequest::Kind window) {
  if (m_windows.erase(window) > 0) {
    report(messageOf(WindowReport{Report::closed, window}));
    if (m_dice.chance(crashes)) {
      m_process->die(SIGABRT);
      return;
    }
    leaveSoon();
  }
}

void WindowsProgram::leaveSoon() {
  m_leaving.reset();
  if (isRunning() && m_windows.empty() && !m_isItemOurs.value_or(false)) {
    m_leaving = m_world.repeat(staysFor, 0.0, [this] {
      m_hasLeft = true;
      m_process->exit(0);
    });
  }
}

void WindowsProgram::calmDown() {
  crashes = hangs = lies = cannotStart = 0.0;
  if (isRunning() && m_hungSince && m_hasLied) {
    m_process->die(SIGKILL);
  }
}

void WindowsProgram::check() {
  const bool isKilledInTime = !m_hungSince || m_scheduler.now() - *m_hungSince <= answerLimit;
  m_findings.require(isKilledInTime || m_hasLied, "a windows' process that hangs is not killed");
  const bool mayMiss = m_hungSince || m_hasLied || cannotStart > 0.0 || m_endings > mostCrashes;
  m_findings.require(!m_missing || mayMiss, "a request does not reach the windows' process",
                     m_missing.value_or(""));
}

void WindowsProgram::checkItem(bool isTaken) {
  m_findings.require(m_isItemOurs.value_or(false) == !isTaken,
                     isTaken ? "the item is shown twice" : "the item is shown by nobody");
}

} // namespace tidewell::test
