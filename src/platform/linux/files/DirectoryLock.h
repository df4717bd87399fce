#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <string>
#include <system_error>

namespace tidewell {

/// Keeps other processes that take the same lock from changing files of a directory, for as long
/// as it lives. The kernel lets go of it when the process ends, however it ends.
class DirectoryLock {
public:
  /// Waits for the lock, one second at the most.
  explicit DirectoryLock(const std::string& directory);

  /// Why the lock is not held; none when it is, and where the file system knows no locks.
  [[nodiscard]] std::error_code error() const { return m_error; }

private:
  FileDescriptor m_directory;
  std::error_code m_error;
};

} // namespace tidewell
