#pragma once

#include <cstddef>

namespace tidewell::test {

class VirtualScheduler;

/// This process's heap: every piece counted, those of the C libraries among them, and large ones of
/// `new` refused to the program's workers while memory is scarce.
class CountedMemory {
public:
  /// Pieces that are in use now, and the bytes in them. None with a sanitizer, which has a heap of
  /// its own.
  [[nodiscard]] static long pieces();
  [[nodiscard]] static long bytes();

  /// From now on only the work of the main queue is given a piece of more than so many bytes.
  static void makeScarce(VirtualScheduler& scheduler, std::size_t largest);
  static void makePlenty();
  [[nodiscard]] static bool isScarce();

  /// How often a piece was refused.
  [[nodiscard]] static long refusals();
};

} // namespace tidewell::test
