#pragma once

#include <cstddef>

namespace tidewell::test {

class VirtualScheduler;

/// This process's memory as `new` gives it: every piece counted, and large ones refused to the
/// program's workers while memory is scarce.
class CountedMemory {
public:
  /// Pieces that are in use now.
  [[nodiscard]] static long pieces();

  /// From now on no task but those of the main queue is given a piece of more than so many bytes.
  static void makeScarce(VirtualScheduler& scheduler, std::size_t largest);
  static void makePlenty();
  [[nodiscard]] static bool isScarce();

  /// How often a piece was refused.
  [[nodiscard]] static long refusals();
};

} // namespace tidewell::test
