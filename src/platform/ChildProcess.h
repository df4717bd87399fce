#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Runs system tools.
class ChildProcess {
public:
  ChildProcess() = default;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  virtual ~ChildProcess() = default;

  /// Starts the tool of this absolute path with these arguments, waits until it has exited and then
  /// gives back what it wrote to its standard output, whatever its exit status; none when it could
  /// not be started. Its standard error goes to a pipe of its own that nobody reads. Any thread;
  /// blocks for the life of the child.
  [[nodiscard]] virtual std::optional<std::string>
  run(const std::string& path, const std::vector<std::string>& arguments) = 0;
};

} // namespace tidewell
