#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>
#include <unistd.h>

namespace tidewell {

/// A child's start settings: no blocked or ignored signals, and the descriptors added here.
///
/// A child uses this object's memory until its program runs, and the parent does not wait for that.
/// So this object must outlive the child, or live until `spawn` has reported its start.
class SpawnSettings {
public:
  /// Whether `spawn` waits until the child's program runs or has failed to.
  enum class Start { awaited, concurrent };

  SpawnSettings() = default;
  SpawnSettings(SpawnSettings&&) = delete;

  /// Opens the file at this path as `target` in the child.
  void open(int target, const char* path, int flags);
  /// Makes `descriptor` available as `target` in the child.
  void duplicate(int descriptor, int target);

  /// Starts a program, once; negative on failure. One that yields runs at a lower priority than the
  /// rest of the session.
  [[nodiscard]] pid_t spawn(const std::string& executable, std::vector<std::string> arguments,
                            std::vector<std::string> environment, Start start, bool yields = false);

  /// Whether the child has failed to run its program. Complete once the child has exited.
  [[nodiscard]] bool hasFailed() const { return m_hasFailed; }

private:
  static int runChild(void* settings);

  std::vector<FileDescriptor> m_copies;          // until the child has its own
  std::vector<std::pair<int, int>> m_duplicates; // copy and target
  std::vector<std::string> m_arguments;
  std::vector<std::string> m_environment;
  std::vector<char*> m_argumentPointers;
  std::vector<char*> m_environmentPointers;
  std::vector<int> m_signals; // that the child sets to their default
  std::unique_ptr<std::byte[]> m_stack;
  bool m_hasFailed = false; // written by the child
};

/// The variables of the environment of this process, as "NAME=value".
[[nodiscard]] inline std::vector<std::string> ownEnvironment() {
  std::vector<std::string> variables;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    variables.emplace_back(*entry);
  }
  return variables;
}

/// A pidfd to wait for the process; negative on kernels without.
[[nodiscard]] int openProcess(pid_t pid);

} // namespace tidewell
