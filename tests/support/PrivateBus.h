#pragma once

#include "platform/linux/loop/FileDescriptor.h"
#include "support/TemporaryDirectory.h"

#include <array>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewell::test {

/// A private bus daemon without service activation. It ends with the fixture.
class PrivateBus {
public:
  PrivateBus() {
    writeInPlace(m_directory / "bus.conf",
                 "<busconfig><type>session</type><listen>" + address() +
                     "</listen><auth>EXTERNAL</auth><policy context='default'>"
                     "<allow send_destination='*'/><allow receive_sender='*'/><allow own='*'/>"
                     "</policy><limit name='reply_timeout'>120000</limit></busconfig>");
    start();
  }
  PrivateBus(PrivateBus&&) = delete;
  ~PrivateBus() { end(); }

  /// False if no daemon is installed; the test must then be skipped.
  [[nodiscard]] bool isThere() const { return m_daemon > 0; }
  [[nodiscard]] std::string address() const {
    return "unix:path=" + (m_directory / "bus").string();
  }

  /// Starts the daemon, again after `end` at the same address; returns when it listens.
  void start() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
      return;
    }
    const FileDescriptor ready(ends[0]);
    FileDescriptor printed(ends[1]);
    const std::string configuration = "--config-file=" + (m_directory / "bus.conf").string();
    const std::string print = "--print-address=" + std::to_string(printed.get());
    m_daemon = ::fork();
    if (m_daemon == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      ::fcntl(printed.get(), F_SETFD, 0);
      ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
      ::execlp("dbus-daemon", "dbus-daemon", "--nofork", "--nopidfile", "--nosyslog",
               configuration.c_str(), print.c_str(), nullptr);
      ::_exit(127);
    }
    printed = FileDescriptor();
    char first = 0;
    if (::read(ready.get(), &first, 1) != 1) {
      end();
    }
  }

  /// Ends the daemon like a crash.
  void end() {
    if (m_daemon > 0) {
      ::kill(m_daemon, SIGKILL);
      ::waitpid(m_daemon, nullptr, 0);
    }
    m_daemon = -1;
    std::error_code ignored;
    std::filesystem::remove(m_directory / "bus", ignored);
  }

  /// Suspends the daemon.
  void halt() const { ::kill(m_daemon, SIGSTOP); }
  void resume() const { ::kill(m_daemon, SIGCONT); }

private:
  TemporaryDirectory m_directory;
  pid_t m_daemon = -1;
};

} // namespace tidewell::test
