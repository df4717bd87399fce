#pragma once

#include <cstddef>

namespace tidewell::test {

/// While it lives, the thread that made it runs out of memory: the allocation of this number,
/// counted from 1, and every later one fail.
class ScarceMemory {
public:
  explicit ScarceMemory(long firstRefused);
  ScarceMemory(ScarceMemory&&) = delete;
  ~ScarceMemory();

  /// Whether an allocation failed since the last of these objects was made.
  [[nodiscard]] static bool hasRefused();
};

/// While it lives, larger allocations fail on every thread. One at a time.
class SmallPiecesOnly {
public:
  explicit SmallPiecesOnly(std::size_t largest);
  SmallPiecesOnly(SmallPiecesOnly&&) = delete;
  ~SmallPiecesOnly();
};

} // namespace tidewell::test
