#pragma once

#include "base/Scheduler.h"
#include "platform/ChildProcess.h"
#include "platform/linux/process/SpawnedChild.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// The program that answers a call of a tool on Linux.
struct ToolCommand {
  std::string executable;
  std::vector<std::string> arguments;
  /// Seconds after which the program is stopped: one that hangs must not block its queue.
  Seconds limit = 0.0;
  ChildPriority priority = ChildPriority::utility;
};

/// The command for this call; nullopt when its program is not installed. Ping is the system's;
/// the other two are helpers that belong to this program.
[[nodiscard]] std::optional<ToolCommand> commandOf(const ToolCall& call);

} // namespace tidewell
