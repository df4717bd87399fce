#pragma once

#include "base/Async.h"
#include "base/Scheduler.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/process/SpawnSettings.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tidewell {

class EventLoop;
class FdWatch;

/// The scheduling priority of a child.
enum class ChildPriority {
  normal, // the user waits for it
  utility // background work, which yields to what the user looks at
};

/// A child process with two pipes, served by the loop. Destroying it kills and reaps the child.
class SpawnedChild {
public:
  /// Starts a program; null on failure, including lack of memory. Its standard input is empty, its
  /// locale is "C", and it inherits no other descriptor and no blocked signal. It is stopped after
  /// `limit` seconds.
  [[nodiscard]] static std::unique_ptr<SpawnedChild>
  start(EventLoop& loop, const std::string& executable, const std::vector<std::string>& arguments,
        Seconds limit, ChildPriority priority = ChildPriority::normal);
  SpawnedChild(SpawnedChild&&) = delete;
  ~SpawnedChild();

  [[nodiscard]] pid_t id() const { return m_pid; }

  /// Asks the child to terminate. Does nothing if it has exited.
  void terminate() const;

  /// Terminates the child, and kills it 0.3 s later if it still runs.
  void stop();

  /// Awaits the child's exit.
  [[nodiscard]] auto exit() { return Exit{*this}; }

  /// Exit status of an exited child; nullopt if a signal ended it.
  [[nodiscard]] std::optional<int> status() const { return m_status; }

  /// The child's standard output; nullopt if its program could not run or there is not enough
  /// memory for it. Call it after `exit`. Does not wait for a descendant that still holds the pipe
  /// open.
  [[nodiscard]] std::optional<std::string> output() const;

private:
  struct Exit {
    [[nodiscard]] bool await_ready() const { return !child.isRunning(); }
    void await_suspend(std::coroutine_handle<> waiter) const {
      child.m_waiter.await_suspend(waiter);
    }
    void await_resume() const {} // NOLINT(readability-convert-member-functions-to-static)

    SpawnedChild& child;
  };

  SpawnedChild(EventLoop& loop, FileDescriptor output, FileDescriptor errors);

  [[nodiscard]] bool isRunning() const { return m_pid > 0 && !m_hasExited; }
  void watch(Seconds limit);
  void look();
  void readOutput(std::string& text) const;

  EventLoop& m_loop;
  SpawnSettings m_settings;
  pid_t m_pid = -1;
  bool m_hasExited = false;
  std::optional<int> m_status;
  FileDescriptor m_process; // pidfd, readable once the child has exited
  FileDescriptor m_output;
  FileDescriptor m_errors; // held open, never read
  std::unique_ptr<FdWatch> m_watch;
  std::unique_ptr<Timer> m_looks; // polls where there is no watch
  std::unique_ptr<Timer> m_limit;
  Waiter m_waiter;
};

} // namespace tidewell
