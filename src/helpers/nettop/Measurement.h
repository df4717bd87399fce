#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace tidewell::nettop {

/// What one process, or a group of them, moved in the second: IP bytes, without the loopback.
struct ProcessTraffic {
  static constexpr std::uint32_t nobody = 0xFFFFFFFF;

  /// As the kernel knows it: any bytes. Our own words if it is not a single process.
  std::string name;
  /// 0 if it is not a single process.
  std::int32_t process = 0;
  /// The process's user; `nobody` if it belongs to no particular user.
  std::uint32_t user = nobody;
  std::uint64_t received = 0;
  std::uint64_t sent = 0;

  friend bool operator==(const ProcessTraffic&, const ProcessTraffic&) = default;
};

/// What was measured, or why it could not be.
struct Measurement {
  std::vector<ProcessTraffic> rows; // in no order
  std::string error;                // for people; empty on success
};

/// The second that is measured, on a monotonic clock. It begins with the object.
class Second {
public:
  Second() { ::clock_gettime(CLOCK_MONOTONIC, &m_beginning); }

  /// Sleeps until so many tenths of it have passed.
  void wait(int tenths = 10) const {
    const timespec until = after(tenths);
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) != 0) {
    }
  }

  /// When so many tenths of it will have passed, in nanoseconds of that clock.
  [[nodiscard]] std::uint64_t nanosecondsAfter(int tenths = 10) const {
    const timespec time = after(tenths);
    return static_cast<std::uint64_t>(time.tv_sec) * nanoseconds +
           static_cast<std::uint64_t>(time.tv_nsec);
  }

private:
  static constexpr long nanoseconds = 1'000'000'000;

  [[nodiscard]] timespec after(int tenths) const {
    const long since = m_beginning.tv_nsec + tenths * (nanoseconds / 10);
    return {m_beginning.tv_sec + since / nanoseconds, since % nanoseconds};
  }

  timespec m_beginning{};
};

/// Measures a second with programs in the kernel: every socket of every process, in all network
/// namespaces, including those that live shorter than the second. Needs CAP_BPF, CAP_PERFMON and
/// CAP_NET_ADMIN, which the process has given up afterwards, and control groups of version 2.
[[nodiscard]] Measurement measureWithBpf();

/// Measures a second with the counters of the TCP sockets of this network namespace. Needs no
/// privilege, and names the processes that the caller may look at.
[[nodiscard]] Measurement measureWithDiag();

} // namespace tidewell::nettop
