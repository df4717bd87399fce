#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace tidewell {

class EventLoop;
class FdWatch;

/// A child process with a socket to it, which is its standard input, for messages both ways. What
/// is sent before the child reads waits for it in the socket. Main thread; never waits for the
/// child. Destroying it closes the socket and leaves the child to itself.
class SocketChild {
public:
  struct Events {
    std::function<void(std::string_view message)> heard;
    /// The child is gone, and this object may be destroyed. `orderly`: it exited with status 0.
    std::function<void(bool orderly)> ended;
  };

  /// Starts a program with this process's environment; null when it cannot be started.
  [[nodiscard]] static std::unique_ptr<SocketChild>
  start(EventLoop& loop, const std::string& executable, Events events);
  SocketChild(const SocketChild&) = delete;
  SocketChild& operator=(const SocketChild&) = delete;
  ~SocketChild();

  /// Sends a message, at most a few kilobytes; does nothing when the child has ended or has let
  /// some hundred messages lie unread.
  void send(const std::string& message) const;

  /// Kills the child; `ended` follows.
  void kill() const;

private:
  SocketChild(pid_t pid, FileDescriptor socket, Events events);

  void read();
  void reap();

  pid_t m_pid;
  FileDescriptor m_socket;
  Events m_events;
  std::unique_ptr<FdWatch> m_watch;
};

} // namespace tidewell
