#pragma once

#include <cstddef>

namespace tidewell::test {

/// While it lives, the memory of the thread that made it runs out: the piece of this number,
/// counted from 1, and every later one are refused.
class ScarceMemory {
public:
  explicit ScarceMemory(long firstRefused);
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory();

  /// Whether a piece was refused since the last of these objects was made.
  [[nodiscard]] static bool hasRefused();
};

/// While it lives, no thread is given a piece of more than so many bytes. One at a time.
class SmallPiecesOnly {
public:
  explicit SmallPiecesOnly(std::size_t largest);
  SmallPiecesOnly(const SmallPiecesOnly&) = delete;
  SmallPiecesOnly& operator=(const SmallPiecesOnly&) = delete;
  ~SmallPiecesOnly();
};

} // namespace tidewell::test
