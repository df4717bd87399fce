// Sends UDP datagrams at an exact constant rate, counted as the interfaces on the way count it:
// with the UDP, IP and Ethernet headers. Prints what it has sent when the time is up or on SIGTERM.
//
//   sender HOST PORT BYTES_PER_SEC SECONDS [FRAME_BYTES]

#include "RealTime.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <iostream>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace {

constexpr std::int64_t ticksPerSecond = 4000;
constexpr std::int64_t nanosecondsPerTick = 1'000'000'000 / ticksPerSecond;
constexpr std::int64_t ethernetAndUdp = 14 + 8;
constexpr std::int64_t largestFrame = 1514;

struct Target {
  sockaddr_storage address{};
  socklen_t size = 0;
  std::int64_t headers = 0; // of every frame, in bytes
};

struct Tally {
  std::int64_t datagrams = 0;
  std::int64_t linkBytes = 0;
  std::int64_t refused = 0; // datagrams that the kernel did not take: they are lost, not repeated
};

std::optional<std::int64_t> parseCount(std::string_view text) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc{} && stop == end && value > 0 ? std::optional(value) : std::nullopt;
}

std::optional<Target> parseTarget(const char* host, std::int64_t port) {
  Target target;
  sockaddr_in v4{};
  sockaddr_in6 v6{};
  if (::inet_pton(AF_INET, host, &v4.sin_addr) == 1) {
    v4.sin_family = AF_INET;
    v4.sin_port = htons(static_cast<std::uint16_t>(port));
    std::memcpy(&target.address, &v4, sizeof v4);
    target.size = sizeof v4;
    target.headers = ethernetAndUdp + 20;
    return target;
  }
  if (::inet_pton(AF_INET6, host, &v6.sin6_addr) == 1) {
    v6.sin6_family = AF_INET6;
    v6.sin6_port = htons(static_cast<std::uint16_t>(port));
    std::memcpy(&target.address, &v6, sizeof v6);
    target.size = sizeof v6;
    target.headers = ethernetAndUdp + 40;
    return target;
  }
  return std::nullopt;
}

// The size of the next frame, so that what is left can always be sent exactly.
std::int64_t nextFrame(std::int64_t left, std::int64_t frame, std::int64_t headers) {
  if (left <= frame) {
    return left;
  }
  return left - frame < headers ? left - headers : frame;
}

bool stopRequested() {
  sigset_t pending;
  ::sigemptyset(&pending);
  ::sigpending(&pending);
  return ::sigismember(&pending, SIGTERM) == 1 || ::sigismember(&pending, SIGINT) == 1;
}

void holdSignals() {
  sigset_t held;
  ::sigemptyset(&held);
  ::sigaddset(&held, SIGTERM);
  ::sigaddset(&held, SIGINT);
  ::sigprocmask(SIG_BLOCK, &held, nullptr);
}

void sleepUntil(const timespec& start, std::int64_t tick) {
  const std::int64_t nanoseconds = start.tv_nsec + tick * nanosecondsPerTick;
  timespec moment = start;
  moment.tv_sec += nanoseconds / 1'000'000'000;
  moment.tv_nsec = nanoseconds % 1'000'000'000;
  while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &moment, nullptr) == EINTR) {
  }
}

Tally send(const Target& target, std::int64_t rate, std::int64_t seconds, std::int64_t frame) {
  const tidewell::FileDescriptor socket(
      ::socket(target.address.ss_family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  const std::vector<char> payload(static_cast<std::size_t>(largestFrame));
  const std::int64_t total = rate * seconds;
  std::int64_t spent = 0;
  Tally tally;
  timespec start{};
  ::clock_gettime(CLOCK_MONOTONIC, &start);
  for (std::int64_t tick = 1; tick <= seconds * ticksPerSecond && !stopRequested(); ++tick) {
    sleepUntil(start, tick);
    // A frame goes out as soon as its last byte is due; the last tick sends the rest.
    const std::int64_t due = rate * tick / ticksPerSecond;
    for (std::int64_t size = nextFrame(total - spent, frame, target.headers);
         size > 0 && spent + size <= due; size = nextFrame(total - spent, frame, target.headers)) {
      const auto length =
          static_cast<std::size_t>(std::max<std::int64_t>(size - target.headers, 0));
      spent += size;
      if (::sendto(socket.get(), payload.data(), length, 0,
                   reinterpret_cast<const sockaddr*>(&target.address), target.size) < 0) {
        ++tally.refused;
        continue;
      }
      ++tally.datagrams;
      tally.linkBytes += target.headers + static_cast<std::int64_t>(length);
    }
  }
  return tally;
}

} // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() < 5 || arguments.size() > 6) {
    std::cerr << "usage: sender HOST PORT BYTES_PER_SEC SECONDS [FRAME_BYTES]\n";
    return 2;
  }
  const auto port = parseCount(arguments[2]);
  const auto rate = parseCount(arguments[3]);
  const auto seconds = parseCount(arguments[4]);
  const auto frame =
      arguments.size() == 6 ? parseCount(arguments[5]) : std::optional<std::int64_t>(500);
  const auto target = parseTarget(arguments[1], port.value_or(0));
  if (!port || *port > 65535 || !rate || !seconds || !target || !frame ||
      *frame < 2 * target->headers || *frame > largestFrame || *rate * *seconds < target->headers) {
    std::cerr << "sender: bad arguments\n";
    return 2;
  }
  tidewell::world::takePrecedence();
  holdSignals();
  const Tally tally = send(*target, *rate, *seconds, *frame);
  std::cout << "{\"datagrams\": " << tally.datagrams << ", \"linkBytes\": " << tally.linkBytes
            << ", \"ipBytes\": " << tally.linkBytes - 14 * tally.datagrams
            << ", \"refused\": " << tally.refused << "}\n";
  return 0;
}
