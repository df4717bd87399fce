#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace tidewell {

class EventLoop;
class FdWatch;

/// A child process whose standard input is a socket for messages both ways. Messages sent before
/// the child reads wait in the socket. It shares this process's standard output and error. Never
/// waits for the child. Destroying this object closes the socket and leaves the child running.
class SocketChild {
public:
  struct Events {
    std::function<void(std::string_view message)> heard;
    /// The child has exited. This object may be destroyed. `orderly`: with status 0.
    std::function<void(bool orderly)> ended;
  };

  /// Starts a program with this process's environment; null if that fails.
  [[nodiscard]] static std::unique_ptr<SocketChild> start(EventLoop& loop,
                                                          const std::string& executable,
                                                          std::vector<std::string> arguments,
                                                          Events events);
  SocketChild(SocketChild&&) = delete;
  ~SocketChild();

  /// Sends a message of at most a few kilobytes. Returns false if it was not sent, because the
  /// child has ended or some hundred messages are unread.
  [[nodiscard]] bool send(const std::string& message) const;

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
