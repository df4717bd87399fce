#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

namespace tidewell {

/// Prevents other processes that take the same lock from changing files of a directory. The kernel
/// releases it when the process ends, however it ends.
class DirectoryLock {
public:
  /// Creates the directory if it is missing. Waits for the lock for at most a second.
  explicit DirectoryLock(const std::string& directory);

  /// Why the lock is not held. A file system without locks is no error.
  [[nodiscard]] std::error_code error() const { return m_error; }

private:
  FileDescriptor m_directory;
  std::error_code m_error;
};

/// What happens to a replaced file.
enum class OldFile { removed, keptAside };

/// Replaces a file as a whole. Whoever opens its path, at any moment and after any crash, finds the
/// old contents or the new ones, and the old ones after an error. Writers of the same file exclude
/// each other by a `DirectoryLock`.
///
/// The file keeps its mode and owner; a new one gets this mode. An old file that is kept aside is
/// named like the path followed by ".broken-", the time in UTC and, if that is taken, a number.
[[nodiscard]] std::error_code replaceFile(const std::string& path, std::string_view contents,
                                          mode_t mode, OldFile old = OldFile::removed);

} // namespace tidewell
