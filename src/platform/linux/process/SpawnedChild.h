#pragma once

#include "base/Scheduler.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tidewell {

/// One child process with its two pipes. Used by one thread.
class SpawnedChild {
public:
  /// Starts a program; none when it cannot be started, for want of memory too. Its standard input
  /// is empty, its locale is "C", and it inherits no other descriptor and no blocked signal.
  [[nodiscard]] static std::optional<SpawnedChild> start(const std::string& executable,
                                                         const std::vector<std::string>& arguments);

  [[nodiscard]] pid_t id() const { return m_pid; }

  /// Tells the child to terminate. Any thread, until `reap`.
  void terminate() const;

  /// Waits until the child has exited. Terminates it when it is still there after `limit` seconds
  /// or as soon as `ending` is readable.
  void wait(Seconds limit, const FileDescriptor& ending) const;

  /// Lets the kernel forget the child; its exit status, none when a signal ended it. Call once,
  /// after `wait`.
  std::optional<int> reap();

  /// What the child has written to its standard output; none when there is no memory for it. Call
  /// after `wait`. A descendant that still holds the pipe open is not waited for.
  [[nodiscard]] std::optional<std::string> output() const;

private:
  SpawnedChild(pid_t pid, FileDescriptor output, FileDescriptor errors);

  [[nodiscard]] static pid_t spawn(const std::string& executable,
                                   const std::vector<std::string>& arguments, int output,
                                   int errors);
  [[nodiscard]] bool waitFor(int milliseconds, int ending) const;
  void readOutput(std::string& text) const;

  pid_t m_pid;
  FileDescriptor m_process; // pidfd; readable once the child has exited
  FileDescriptor m_output;
  FileDescriptor m_errors; // held open, never read
};

} // namespace tidewell
