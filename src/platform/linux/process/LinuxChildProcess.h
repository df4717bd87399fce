#pragma once

#include "platform/ChildProcess.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

class SpawnedChild;

/// Runs the tools of `SystemTools` with an untranslated output (LC_ALL=C).
///
/// A child that outlives its tool's limit, or `endAll`, is told to terminate and soon after killed;
/// what it wrote until then is its output.
class LinuxChildProcess final : public ChildProcess {
public:
  LinuxChildProcess();

  [[nodiscard]] std::optional<std::string>
  run(const std::string& path, const std::vector<std::string>& arguments,
      const std::function<void(Id child)>& launched = {}) override;
  void terminate(Id child) override;

  /// Ends every running child and lets no new one start: the program is about to exit. Any thread.
  void endAll();

private:
  void list(Id id, SpawnedChild& child);

  std::mutex m_mutex;
  std::map<Id, SpawnedChild*> m_running; // guarded by m_mutex
  FileDescriptor m_ending;               // eventfd, readable from `endAll` on
};

} // namespace tidewell
