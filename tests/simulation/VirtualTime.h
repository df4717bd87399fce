#pragma once

namespace tidewell::test {

class VirtualScheduler;

/// While it lives, this process's clocks that count from the machine's start show virtual time, to
/// the libraries too. The wall clock does not: the program sees that through a seam of its own.
class VirtualTime {
public:
  explicit VirtualTime(const VirtualScheduler& scheduler);
  VirtualTime(const VirtualTime&) = delete;
  VirtualTime& operator=(const VirtualTime&) = delete;
  ~VirtualTime();
};

} // namespace tidewell::test
