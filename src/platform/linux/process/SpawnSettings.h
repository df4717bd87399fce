#pragma once

#include <string>
#include <vector>

#include <spawn.h>

namespace tidewell {

/// A child's start settings: no blocked or ignored signals, and the descriptors added here.
class SpawnSettings {
public:
  SpawnSettings();
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings();

  /// Opens the file at this path as `target` in the child.
  void open(int target, const char* path, int flags);
  /// Makes `descriptor` available as `target` in the child.
  void duplicate(int descriptor, int target);

  /// Starts a program; negative on failure. One that yields runs at a lower priority than the rest
  /// of the session.
  [[nodiscard]] pid_t spawn(const std::string& executable, std::vector<std::string> arguments,
                            std::vector<std::string> environment, bool yields = false) const;

private:
  posix_spawn_file_actions_t m_actions{};
  posix_spawnattr_t m_attributes{};
};

/// A pidfd to wait for the process; negative on kernels without.
[[nodiscard]] int openProcess(pid_t pid);

} // namespace tidewell
