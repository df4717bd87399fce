// Adds latency: every packet that the kernel sends into a tun device comes out of it again later.
// A round trip passes twice, so each packet waits half of the delay. Packets keep their order.
//
//   delayRelay TUN_DEVICE FIFO        the FIFO takes lines: MILLISECONDS JITTER_MILLISECONDS

#include "Tools.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <deque>
#include <iostream>
#include <optional>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <sys/ioctl.h>

using tidewell::FileDescriptor;

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::size_t mostPackets = 20'000;

// The kernel puts ten bytes about segments and checksum before each packet. Packets pass before
// they are cut into segments: at a gigabit a second the segments would be too many.
constexpr std::size_t largestPacket = 10 + 65'536;
constexpr unsigned uncut = TUN_F_CSUM | TUN_F_TSO4 | TUN_F_TSO6 | TUN_F_TSO_ECN;

FileDescriptor openTun(std::string_view name) {
  FileDescriptor tun(::open("/dev/net/tun", O_RDWR | O_NONBLOCK | O_CLOEXEC));
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  request.ifr_flags = IFF_TUN | IFF_NO_PI | IFF_VNET_HDR;
  if (::ioctl(tun.get(), TUNSETIFF, &request) != 0 ||
      ::ioctl(tun.get(), TUNSETOFFLOAD, uncut) != 0) {
    tun.reset();
  }
  return tun;
}

/// How long packets wait.
class Delay {
public:
  /// Reads the last line "MILLISECONDS JITTER_MILLISECONDS" that is in the FIFO.
  void read(const FileDescriptor& fifo) {
    std::array<char, 256> text{};
    const auto size = ::read(fifo.get(), text.data(), text.size() - 1);
    std::istringstream lines(
        std::string(text.data(), size > 0 ? static_cast<std::size_t>(size) : 0));
    for (double delay = 0.0, jitter = 0.0; lines >> delay >> jitter;) {
      m_delay = delay;
      m_jitter = jitter;
    }
  }

  /// One of the two waits of a round trip.
  [[nodiscard]] Clock::duration next() {
    std::uniform_real_distribution<double> spread(-1.0, 1.0);
    const double wait = (m_delay + m_jitter * spread(m_random)) / 2.0;
    return std::chrono::duration_cast<Clock::duration>(Milliseconds(std::max(wait, 0.0)));
  }

private:
  double m_delay = 0.0;
  double m_jitter = 0.0;
  std::minstd_rand m_random{std::random_device{}()};
};

/// The packets on their way.
class Line {
public:
  explicit Line(const FileDescriptor& tun) : m_tun(tun), m_buffer(largestPacket) {}

  void receive(Delay& delay) {
    for (auto size = ::read(m_tun.get(), m_buffer.data(), m_buffer.size()); size > 0;
         size = ::read(m_tun.get(), m_buffer.data(), m_buffer.size())) {
      if (m_packets.size() < mostPackets) {
        const auto due = Clock::now() + delay.next();
        m_lastDue = std::max(m_lastDue, due);
        m_packets.push_back({m_lastDue, {m_buffer.begin(), m_buffer.begin() + size}});
      }
    }
  }

  void release() {
    while (!m_packets.empty() && m_packets.front().due <= Clock::now()) {
      const auto& bytes = m_packets.front().bytes;
      // A packet that the kernel refuses is a lost packet.
      [[maybe_unused]] const auto size = ::write(m_tun.get(), bytes.data(), bytes.size());
      m_packets.pop_front();
    }
  }

  /// Until the next packet is due. Nullopt while the line is empty.
  [[nodiscard]] std::optional<timespec> pause() const {
    if (m_packets.empty()) {
      return std::nullopt;
    }
    const auto left = std::max(m_packets.front().due - Clock::now(), Clock::duration::zero());
    const auto nanoseconds = std::chrono::nanoseconds(left).count();
    return timespec{nanoseconds / 1'000'000'000, nanoseconds % 1'000'000'000};
  }

private:
  struct Packet {
    Clock::time_point due;
    std::vector<char> bytes;
  };

  const FileDescriptor& m_tun;
  std::vector<char> m_buffer;
  std::deque<Packet> m_packets;
  Clock::time_point m_lastDue;
};

void relay(const FileDescriptor& tun, const FileDescriptor& fifo) {
  Delay delay;
  Line line(tun);
  while (true) {
    std::array<pollfd, 2> waits{{{tun.get(), POLLIN, 0}, {fifo.get(), POLLIN, 0}}};
    const auto pause = line.pause();
    ::ppoll(waits.data(), waits.size(), pause ? &*pause : nullptr, nullptr);
    if ((waits[1].revents & POLLIN) != 0) {
      delay.read(fifo);
    }
    line.receive(delay);
    line.release();
  }
}

} // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() != 3) {
    std::cerr << "usage: delayRelay TUN_DEVICE FIFO\n";
    return 2;
  }
  const FileDescriptor tun = openTun(arguments[1]);
  // Opened for writing, too, so that the FIFO never ends.
  const FileDescriptor fifo(::open(arguments[2], O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (!tun.isOpen() || !fifo.isOpen()) {
    std::cerr << "delayRelay: cannot open the device or the FIFO\n";
    return 1;
  }
  tidewell::world::takePrecedence();
  std::cout << "ready" << std::endl;
  relay(tun, fifo);
}
