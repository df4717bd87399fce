#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include <sys/types.h>

namespace tidewell {

/// Replaces a file as a whole: whoever opens its path, at any moment and after any crash, finds
/// the old contents or the new ones.
///
/// Writers of the same file exclude each other by other means (`DirectoryLock`).
class AtomicFile {
public:
  /// `mode` is for a file that does not exist yet; one that does keeps its mode and owner.
  AtomicFile(std::string path, mode_t mode);
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;
  /// Removes the new contents unless they were committed.
  ~AtomicFile();

  /// Writes the new contents to the disk beside the file.
  [[nodiscard]] std::error_code prepare(std::string_view contents);

  /// Puts the prepared contents in the file's place.
  [[nodiscard]] std::error_code commit();

private:
  std::string m_path;
  std::string m_newPath;
  mode_t m_mode;
  bool m_isPrepared = false;
};

/// Gives the file of this path a second name in its directory, so that replacing it loses nothing:
/// the path followed by ".broken-", the time in UTC and, where that is taken, a number. A file
/// that cannot have two names is renamed. Nothing happens when there is no file.
[[nodiscard]] std::error_code keepAside(const std::string& path);

} // namespace tidewell
