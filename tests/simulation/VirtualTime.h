#pragma once

namespace tidewell::test {

class VirtualScheduler;

/// While it lives, this process's monotonic clocks show virtual time, in libraries too. The wall
/// clock does not: the program reads that through an interface.
class VirtualTime {
public:
  explicit VirtualTime(const VirtualScheduler& scheduler);
  VirtualTime(VirtualTime&&) = delete;
  ~VirtualTime();
};

} // namespace tidewell::test
