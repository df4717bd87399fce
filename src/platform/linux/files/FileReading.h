#pragma once

#include <cstddef>
#include <string>

namespace tidewell {

/// What came of reading a file.
struct FileReading {
  enum class Outcome { absent, read, unreadable };

  Outcome outcome = Outcome::absent;
  std::string contents; // empty unless read
};

/// Reads a regular file of `limit` bytes at the most; anything else is unreadable, a file that
/// grows while it is read included. Follows links, never blocks on a pipe or a device.
[[nodiscard]] FileReading readFile(const std::string& path, std::size_t limit);

} // namespace tidewell
