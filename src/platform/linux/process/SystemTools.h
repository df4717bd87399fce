#pragma once

#include "base/Scheduler.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// How a tool that services name by a fixed path is called on Linux.
struct ToolCall {
  std::string executable;
  std::vector<std::string> arguments;
  /// The tool is ended when it has run for longer: a tool that hangs must not stop its queue.
  Seconds limit = 0.0;
};

/// The call that answers for this path and these arguments; none when the tool is not installed.
/// Ping's waiting time, given in milliseconds, is turned into the seconds of Linux's ping. The
/// tools for statistics per process and for the quality of the line, which Linux lacks, are helpers
/// that belong to this program.
[[nodiscard]] std::optional<ToolCall> systemTool(const std::string& path,
                                                 const std::vector<std::string>& arguments);

} // namespace tidewell
