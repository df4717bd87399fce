// Sends UDP datagrams at an exact constant rate. UDP, IP and Ethernet headers count, as on the
// interfaces. Prints what it has sent when the time is up or on SIGTERM.
//
//   sender HOST PORT BYTES_PER_SEC SECONDS [FRAME_BYTES]

#include "Tools.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <optional>
#include <span>
#include <vector>

#include <sys/socket.h>

namespace {

using namespace tidewell;

constexpr std::int64_t ticksPerSecond = 4000;
constexpr std::int64_t nanosecondsPerTick = 1'000'000'000 / ticksPerSecond;
constexpr std::int64_t ethernetAndUdp = 14 + 8;
constexpr std::int64_t largestFrame = 1514;

struct Tally {
  std::int64_t datagrams = 0;
  std::int64_t linkBytes = 0;
  std::int64_t refused = 0; // datagrams that the kernel did not take; they are not sent again
};

// The size of the next frame. What is left after it can be sent exactly.
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

Tally send(const world::Target& target, std::int64_t rate, std::int64_t seconds,
           std::int64_t frame) {
  const FileDescriptor socket(::socket(target.address.ss_family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  const std::int64_t headers = ethernetAndUdp + target.ipHeader;
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
    for (std::int64_t size = nextFrame(total - spent, frame, headers);
         size > 0 && spent + size <= due; size = nextFrame(total - spent, frame, headers)) {
      const auto length = static_cast<std::size_t>(std::max<std::int64_t>(size - headers, 0));
      spent += size;
      if (::sendto(socket.get(), payload.data(), length, 0, target.get(), target.size) < 0) {
        ++tally.refused;
        continue;
      }
      ++tally.datagrams;
      tally.linkBytes += headers + static_cast<std::int64_t>(length);
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
  const auto target = world::parseTarget(arguments[1], arguments[2]);
  const auto rate = world::parseCount(arguments[3]);
  const auto seconds = world::parseCount(arguments[4]);
  const auto frame = world::parseCount(arguments.size() == 6 ? arguments[5] : "500");
  const std::int64_t headers = ethernetAndUdp + (target ? target->ipHeader : 0);
  if (!target || !rate || !seconds || !frame || *frame < 2 * headers || *frame > largestFrame ||
      *rate * *seconds < headers) {
    std::cerr << "sender: bad arguments\n";
    return 2;
  }
  world::takePrecedence();
  holdSignals();
  const Tally tally = send(*target, *rate, *seconds, *frame);
  std::cout << "{\"datagrams\": " << tally.datagrams << ", \"linkBytes\": " << tally.linkBytes
            << ", \"ipBytes\": " << tally.linkBytes - 14 * tally.datagrams
            << ", \"refused\": " << tally.refused << "}\n";
  return 0;
}
