// Sends so many bytes of payload at once and prints what IP makes of them, headers included:
//
//   talker tcp|udp HOST PORT BYTES [HOLD_SECONDS]
//
// Over TCP it waits until the other end has them all, prints, and keeps the connection for a while,
// so that nothing more moves.

#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include <arpa/inet.h>
#include <linux/sockios.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

using tidewell::FileDescriptor;

constexpr std::int64_t datagramPayload = 1000;
constexpr std::int64_t udpHeader = 8;
constexpr std::int64_t tcpHeader = 32; // with timestamps
constexpr std::int64_t moreOptionsOfTheFirst = 8;

struct Tally {
  std::int64_t sent = 0;     // IP bytes
  std::int64_t received = 0; // IP bytes
};

struct Target {
  sockaddr_storage address{};
  socklen_t size = 0;
  std::int64_t ipHeader = 0;
};

std::optional<std::int64_t> parseCount(std::string_view text) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc{} && stop == end && value >= 0 ? std::optional(value) : std::nullopt;
}

template <class Address> Target target(Address address, std::int64_t ipHeader) {
  Target result;
  std::memcpy(&result.address, &address, sizeof address);
  result.size = sizeof address;
  result.ipHeader = ipHeader;
  return result;
}

std::optional<Target> parseTarget(const char* host, std::int64_t port) {
  sockaddr_in v4{};
  sockaddr_in6 v6{};
  if (::inet_pton(AF_INET, host, &v4.sin_addr) == 1) {
    v4.sin_family = AF_INET;
    v4.sin_port = htons(static_cast<std::uint16_t>(port));
    return target(v4, 20);
  }
  if (::inet_pton(AF_INET6, host, &v6.sin6_addr) == 1) {
    v6.sin6_family = AF_INET6;
    v6.sin6_port = htons(static_cast<std::uint16_t>(port));
    return target(v6, 40);
  }
  return std::nullopt;
}

std::optional<Tally> sendDatagrams(const FileDescriptor& socket, const Target& to,
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

std::optional<Tally> sendStream(const FileDescriptor& socket, const Target& to,
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
  const auto port = parseCount(arguments[3]);
  const auto bytes = parseCount(arguments[4]);
  const auto hold =
      arguments.size() == 6 ? parseCount(arguments[5]) : std::optional<std::int64_t>(0);
  const auto to = parseTarget(arguments[2], port.value_or(0));
  if (!port || !bytes || !hold || !to) {
    std::cerr << "talker: bad arguments\n";
    return 2;
  }
  const FileDescriptor socket(
      ::socket(to->address.ss_family, (isTcp ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC, 0));
  if (::connect(socket.get(), reinterpret_cast<const sockaddr*>(&to->address), to->size) != 0) {
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
