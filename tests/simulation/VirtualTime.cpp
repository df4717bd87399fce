#include "VirtualTime.h"

#include "support/VirtualScheduler.h"

#include <atomic>
#include <chrono>
#include <ctime>

#include <sys/syscall.h>
#include <unistd.h>

namespace tidewell::test {

namespace {

// Some code treats a clock at zero as missing.
constexpr std::time_t uptimeAtStart = 1000;

std::atomic<const VirtualScheduler*> shown = nullptr;

} // namespace

VirtualTime::VirtualTime(const VirtualScheduler& scheduler) { shown = &scheduler; }

VirtualTime::~VirtualTime() { shown = nullptr; }

} // namespace tidewell::test

/// Replaces the C library's function in this process.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  const auto* const scheduler = tidewell::test::shown.load();
  if (scheduler == nullptr || (clock != CLOCK_MONOTONIC && clock != CLOCK_BOOTTIME)) {
    return static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
  }
  const auto now = scheduler->now();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(now);
  time->tv_sec = tidewell::test::uptimeAtStart + seconds.count();
  time->tv_nsec = static_cast<long>((now - seconds).count());
  return 0;
}
