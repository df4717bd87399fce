#pragma once

#include "base/Async.h"
#include "base/Interface.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace tidewell {

/// The tools that measure for the services.
enum class Tool {
  ping,           // one echo request
  processTraffic, // the bytes that each process moves within a second
  lineTest        // the line's capacity and responsiveness
};

/// A tool and its arguments.
struct ToolCall {
  Tool tool = Tool::ping;
  /// The address that `ping` probes.
  std::string target;
  /// How long `ping` waits for the reply.
  Seconds wait = 0.0;

  friend bool operator==(const ToolCall&, const ToolCall&) = default;
};

/// Runs tools in child processes.
class ChildProcess : public Interface {
public:
  /// Identifies a started child.
  using Id = std::int64_t;

  /// Starts the tool, waits for its exit and returns its standard output, whatever its exit status;
  /// nullopt if it could not be started. Its standard error goes to a pipe that nobody reads.
  /// `launched`, if given, is called after the start. Destroying the coroutine ends the child.
  [[nodiscard]] virtual Async<std::optional<std::string>>
  run(ToolCall call, std::function<void(Id child)> launched) = 0;
  [[nodiscard]] Async<std::optional<std::string>> run(ToolCall call) {
    return run(std::move(call), nullptr);
  }

  /// Asks a child to terminate. Does nothing if it has exited.
  virtual void terminate(Id child) = 0;
};

} // namespace tidewell
