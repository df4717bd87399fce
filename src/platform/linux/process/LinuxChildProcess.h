#pragma once

#include "platform/ChildProcess.h"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tidewell {

class EventLoop;
class SpawnedChild;

/// Runs the tools of `SystemTools` with untranslated output (LC_ALL=C).
///
/// A child is stopped at its tool's limit; its output until then counts.
class LinuxChildProcess final : public ChildProcess {
public:
  /// Borrows the loop.
  explicit LinuxChildProcess(EventLoop& loop) : m_loop(loop) {}

  using ChildProcess::run;
  [[nodiscard]] Async<std::optional<std::string>>
  run(ToolCall call, std::function<void(Id child)> launched) override;
  void terminate(Id child) override;

private:
  class Listing;

  EventLoop& m_loop;
  std::map<Id, SpawnedChild*> m_running;
};

} // namespace tidewell
