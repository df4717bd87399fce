#pragma once

#include "platform/linux/FileDescriptor.h"

#include <string>

namespace tidewell {

/// Keeps other processes that take the same lock from changing files of a directory, for as long
/// as it lives. The kernel lets go of it when the process ends, however it ends.
class DirectoryLock {
public:
  /// Waits for the lock, one second at the most.
  explicit DirectoryLock(const std::string& directory);

  /// Whether nobody else holds the lock. True as well where the file system knows no locks.
  [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
  FileDescriptor m_directory;
  bool m_isHeld = false;
};

} // namespace tidewell
