#pragma once

#include "base/Async.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace tidewell {

/// The tools that measure for the services and print what they found.
enum class Tool {
  ping,           // one echo request
  processTraffic, // the bytes that each process moves within a second
  lineTest        // capacity and responsiveness of the line
};

/// A tool and what it is asked.
struct ToolCall {
  Tool tool = Tool::ping;
  /// Address that `ping` asks.
  std::string target;
  /// How long `ping` waits for its answer.
  Seconds wait = 0.0;

  friend bool operator==(const ToolCall&, const ToolCall&) = default;
};

/// Runs tools in child processes.
class ChildProcess {
public:
  /// Names a child that was started.
  using Id = std::int64_t;

  ChildProcess() = default;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  virtual ~ChildProcess() = default;

  /// Starts the tool, waits until it has exited and then gives what it wrote to its standard
  /// output, whatever its exit status; nullopt when it could not be started. Its standard error
  /// goes to a pipe of its own that nobody reads. `launched`, if given, is called in between.
  /// Destroying the coroutine ends the child.
  [[nodiscard]] virtual Async<std::optional<std::string>>
  run(ToolCall call, std::function<void(Id child)> launched) = 0;
  [[nodiscard]] Async<std::optional<std::string>> run(ToolCall call) {
    return run(std::move(call), nullptr);
  }

  /// Asks a child to terminate. Does nothing when it has exited.
  virtual void terminate(Id child) = 0;
};

} // namespace tidewell
