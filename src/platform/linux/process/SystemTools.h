#pragma once

#include "base/Scheduler.h"
#include "platform/ChildProcess.h"
#include "platform/linux/process/SpawnedChild.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// The command for a tool on Linux.
struct ToolCommand {
  std::string executable;
  std::vector<std::string> arguments;
  /// Seconds after which the program is stopped, so that it cannot block its queue.
  Seconds limit = 0.0;
  ChildPriority priority = ChildPriority::utility;
};

/// The command for this call; nullopt if its program is not installed. Ping is the system's; the
/// other two are this program's helpers.
[[nodiscard]] std::optional<ToolCommand> commandOf(const ToolCall& call);

} // namespace tidewell
