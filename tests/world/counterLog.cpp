// Writes down an interface's own byte counters, densely: the truth that readings are held against.
// One line per reading: wall-clock seconds before it, seconds after it, bytes received, bytes sent.
// While there is no such interface there are no lines. Ends on SIGTERM.
//
//   counterLog INTERFACE [PERIOD_MICROSECONDS]

#include "RealTime.h"
#include "base/NumberText.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <iostream>
#include <optional>
#include <span>
#include <string>

#include <fcntl.h>
#include <net/if.h>

using tidewell::FileDescriptor;

namespace {

double wallClock() {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// The two counter files of one device; a device that was made anew has to be opened anew.
class Counters {
public:
  explicit Counters(const std::string& interface)
      : m_received(open(interface, "rx_bytes")), m_sent(open(interface, "tx_bytes")) {}

  [[nodiscard]] std::optional<std::int64_t> received() const { return read(m_received); }
  [[nodiscard]] std::optional<std::int64_t> sent() const { return read(m_sent); }

private:
  static FileDescriptor open(const std::string& interface, const char* counter) {
    const std::string path = "/sys/class/net/" + interface + "/statistics/" + counter;
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  }

  static std::optional<std::int64_t> read(const FileDescriptor& file) {
    std::array<char, 32> text{};
    const auto size = ::pread(file.get(), text.data(), text.size(), 0);
    std::int64_t value = 0;
    if (size <= 0 || std::from_chars(text.data(), text.data() + size, value).ec != std::errc{}) {
      return std::nullopt;
    }
    return value;
  }

  FileDescriptor m_received;
  FileDescriptor m_sent;
};

void sleepFor(long microseconds) {
  const timespec span{microseconds / 1'000'000, microseconds % 1'000'000 * 1000};
  ::clock_nanosleep(CLOCK_MONOTONIC, 0, &span, nullptr);
}

} // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() < 2) {
    std::cerr << "usage: counterLog INTERFACE [PERIOD_MICROSECONDS]\n";
    return 2;
  }
  const std::string interface = arguments[1];
  long period = 1000;
  if (arguments.size() > 2) {
    const char* const text = arguments[2];
    std::from_chars(text, text + std::strlen(text), period);
  }
  tidewell::world::takePrecedence();
  std::optional<Counters> counters(interface);
  while (std::cout) {
    const double before = wallClock();
    const auto received = counters->received();
    const auto sent = counters->sent();
    const double after = wallClock();
    if (received && sent) {
      std::cout << tidewell::fixedText(before, 6) << ' ' << tidewell::fixedText(after, 6) << ' '
                << *received << ' ' << *sent << '\n'
                << std::flush;
    } else {
      counters.emplace(interface);
    }
    sleepFor(period);
  }
  return 0;
}
