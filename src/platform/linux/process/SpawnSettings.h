#pragma once

#include <string>
#include <vector>

#include <spawn.h>

namespace tidewell {

/// What a child starts with: no blocked or ignored signals, and the descriptors that are added.
class SpawnSettings {
public:
  SpawnSettings();
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings();

  /// In the child, `target` is the file of this path.
  void open(int target, const char* path, int flags);
  /// In the child, `target` is what `descriptor` is here.
  void duplicate(int descriptor, int target);

  /// Starts a program; negative when it cannot be started. One that yields runs at a lower
  /// priority than the rest of the session.
  [[nodiscard]] pid_t spawn(const std::string& executable, std::vector<std::string> arguments,
                            std::vector<std::string> environment, bool yields = false) const;

private:
  posix_spawn_file_actions_t m_actions{};
  posix_spawnattr_t m_attributes{};
};

/// A descriptor of the process, for waiting; negative on kernels without.
[[nodiscard]] int openProcess(pid_t pid);

} // namespace tidewell
