#pragma once

#include <cstddef>
#include <string>

namespace tidewell {

/// A file's contents, or why there are none.
struct FileReading {
  enum class Outcome { absent, read, unreadable };

  Outcome outcome = Outcome::absent;
  std::string contents; // empty unless read
};

/// Reads a regular file of at most `limit` bytes. Anything else is unreadable, and so is a file
/// that grows meanwhile. Follows links, and never blocks on a pipe or a device.
[[nodiscard]] FileReading readFile(const std::string& path, std::size_t limit);

} // namespace tidewell
