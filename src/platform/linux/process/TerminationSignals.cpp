#include "platform/linux/process/TerminationSignals.h"

#include "platform/linux/loop/EventLoop.h"

#include <csignal>
#include <cstdint>
#include <utility>

#include <sys/epoll.h>
#include <sys/signalfd.h>

namespace tidewell {

TerminationSignals::TerminationSignals(EventLoop& loop, std::function<void()> onTermination) {
  struct sigaction ignored {};
  ignored.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignored, nullptr);
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGHUP);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  m_signals = FileDescriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  m_watch = loop.watch(m_signals.get(), EPOLLIN,
                       [this, onTermination = std::move(onTermination)](std::uint32_t) {
                         signalfd_siginfo signal{};
                         if (::read(m_signals.get(), &signal, sizeof signal) == sizeof signal) {
                           onTermination();
                         }
                       });
}

TerminationSignals::~TerminationSignals() = default;

} // namespace tidewell
