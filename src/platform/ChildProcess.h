#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Runs system tools.
class ChildProcess {
public:
  /// Names a child that was started.
  using Id = std::int64_t;

  ChildProcess() = default;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  virtual ~ChildProcess() = default;

  /// Starts the tool of this absolute path with these arguments, waits until it has exited and then
  /// gives back what it wrote to its standard output, whatever its exit status; none when it could
  /// not be started. Its standard error goes to a pipe of its own that nobody reads. `launched`, if
  /// given, is called in between. Any thread; blocks for the life of the child.
  [[nodiscard]] virtual std::optional<std::string>
  run(const std::string& path, const std::vector<std::string>& arguments,
      const std::function<void(Id child)>& launched = {}) = 0;

  /// Tells a child to terminate. Does nothing when it has exited. Any thread.
  virtual void terminate(Id child) = 0;
};

} // namespace tidewell
