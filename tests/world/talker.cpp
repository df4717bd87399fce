// Sends bytes of payload at once and prints how many IP bytes that made, headers included:
//
//   talker tcp|udp HOST PORT BYTES [HOLD_SECONDS]
//
// Over TCP it waits until all are acknowledged, prints, and keeps the connection open for a while,
// so that nothing more is sent.

#include "Tools.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <linux/sockios.h>
#include <linux/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using namespace tidewell;

constexpr std::int64_t datagramPayload = 1000;
constexpr std::int64_t udpHeader = 8;
constexpr std::int64_t tcpHeader = 32; // with timestamps
constexpr std::int64_t moreOptionsOfTheFirst = 8;

struct Tally {
  std::int64_t sent = 0;     // IP bytes
  std::int64_t received = 0; // IP bytes
};

std::optional<Tally> sendDatagrams(const FileDescriptor& socket, const world::Target& to,
                                   std::int64_t bytes) {
  const std::vector<char> payload(datagramPayload);
  Tally tally;
  while (bytes > 0) {
    const auto size = std::min(bytes, datagramPayload);
    if (::send(socket.get(), payload.data(), static_cast<std::size_t>(size), 0) != size) {
      return std::nullopt;
    }
    bytes -= size;
    tally.sent += to.ipHeader + udpHeader + size;
  }
  return tally;
}

std::optional<Tally> sendStream(const FileDescriptor& socket, const world::Target& to,
                                std::int64_t bytes) {
  const std::vector<char> payload(1U << 16U);
  while (bytes > 0) {
    const auto size = std::min(bytes, static_cast<std::int64_t>(payload.size()));
    const ssize_t count =
        ::send(socket.get(), payload.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL);
    if (count < 0) {
      return std::nullopt;
    }
    bytes -= count;
  }
  for (int waiting = 1; waiting > 0;) {
    ::usleep(500);
    if (::ioctl(socket.get(), SIOCOUTQ, &waiting) != 0) {
      return std::nullopt;
    }
  }
  tcp_info info{};
  socklen_t size = sizeof info;
  if (::getsockopt(socket.get(), IPPROTO_TCP, TCP_INFO, &info, &size) != 0) {
    return std::nullopt;
  }
  const std::int64_t header = to.ipHeader + tcpHeader;
  return Tally{static_cast<std::int64_t>(info.tcpi_bytes_sent) + header * info.tcpi_segs_out +
                   moreOptionsOfTheFirst,
               static_cast<std::int64_t>(info.tcpi_bytes_received) + header * info.tcpi_segs_in +
                   moreOptionsOfTheFirst};
}

} // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() < 5 || arguments.size() > 6) {
    std::cerr << "usage: talker tcp|udp HOST PORT BYTES [HOLD_SECONDS]\n";
    return 2;
  }
  const bool isTcp = std::string_view(arguments[1]) == "tcp";
  const auto to = world::parseTarget(arguments[2], arguments[3]);
  const auto bytes = world::parseCount(arguments[4]);
  const auto hold = world::parseCount(arguments.size() == 6 ? arguments[5] : "0");
  if (!to || !bytes || !hold) {
    std::cerr << "talker: bad arguments\n";
    return 2;
  }
  const FileDescriptor socket(
      ::socket(to->address.ss_family, (isTcp ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC, 0));
  if (::connect(socket.get(), to->get(), to->size) != 0) {
    std::cerr << "talker: no connection\n";
    return 1;
  }
  const auto tally = isTcp ? sendStream(socket, *to, *bytes) : sendDatagrams(socket, *to, *bytes);
  if (!tally) {
    std::cerr << "talker: could not send\n";
    return 1;
  }
  std::cout << "{\"process\": " << ::getpid() << ", \"sent\": " << tally->sent
            << ", \"received\": " << tally->received << "}" << std::endl;
  ::sleep(static_cast<unsigned>(*hold));
  return 0;
}
