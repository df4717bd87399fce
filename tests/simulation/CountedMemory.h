#pragma once

#include <cstddef>

namespace tidewell::test {

class VirtualScheduler;

/// This process's heap. Counts all allocations, including those of C libraries. While memory is
/// scarce, large ones by `new` fail outside the main queue.
class CountedMemory {
public:
  /// The allocations in use and their bytes; nullopt with a sanitizer, which has its own heap.
  [[nodiscard]] static long pieces();
  [[nodiscard]] static long bytes();

  /// From now on larger allocations succeed only in work of the main queue.
  static void makeScarce(VirtualScheduler& scheduler, std::size_t largest);
  static void makePlenty();
  [[nodiscard]] static bool isScarce();

  /// How many allocations failed.
  [[nodiscard]] static long refusals();
};

} // namespace tidewell::test
