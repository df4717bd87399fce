#include "helpers/nettop/SockDiag.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace tidewell::nettop {
namespace {

constexpr std::size_t longestDatagram = 32768;
constexpr int queueSize = 4 << 20; // the kernel allows what it sees fit

// Without options. Nearly every segment carries the timestamps.
constexpr std::uint64_t tcpHeader = 20;
constexpr std::uint64_t timestampOption = 12;
constexpr std::uint64_t ipv4Header = 20;
constexpr std::uint64_t ipv6Header = 40;

// TCP states, which the kernel's public headers do not list.
constexpr std::uint32_t established = 1;
constexpr std::uint32_t timeWait = 6;
constexpr std::uint32_t close = 7;
constexpr std::uint32_t listen = 10;
constexpr std::uint32_t closing = 11;

constexpr std::uint32_t wantedStates() {
  std::uint32_t states = 0;
  for (std::uint32_t state = established; state <= closing; ++state) {
    if (state != timeWait && state != close && state != listen) {
      states |= 1U << state;
    }
  }
  return states;
}

/// The TCP counters among the attributes. Those that an older kernel lacks are zero.
std::optional<tcp_info> findCounters(NetlinkBytes attributes) {
  std::optional<tcp_info> counters;
  forEachAttribute(attributes, [&counters](std::uint16_t type, NetlinkBytes value) {
    if (type == INET_DIAG_INFO) {
      counters.emplace();
      std::memcpy(&*counters, value.data(), std::min(value.size(), sizeof *counters));
    }
  });
  return counters;
}

TcpEnd end(const __be32* address, __be16 port, bool isMapped) {
  TcpEnd result;
  if (isMapped) {
    result.address[0] = address[3];
  } else {
    std::copy_n(address, result.address.size(), result.address.begin());
  }
  result.port = port;
  return result;
}

bool isMappedAddress(const __be32* address) {
  return address[0] == 0 && address[1] == 0 && address[2] == htonl(0xFFFF);
}

bool isLoopbackAddress(const TcpEnd& end, bool isIpv4) {
  if (isIpv4) {
    return ntohl(end.address[0]) >> 24 == 127;
  }
  return end.address == std::array<std::uint32_t, 4>{0, 0, 0, htonl(1)};
}

TcpReading toReading(const inet_diag_msg& message, const tcp_info& counters) {
  const bool isMapped = message.idiag_family == AF_INET6 && isMappedAddress(message.id.idiag_dst);
  const bool isIpv4 = message.idiag_family == AF_INET || isMapped;
  const bool hasTimestamps = (counters.tcpi_options & TCPI_OPT_TIMESTAMPS) != 0;
  const std::uint64_t header =
      (isIpv4 ? ipv4Header : ipv6Header) + tcpHeader + (hasTimestamps ? timestampOption : 0);
  TcpReading reading;
  reading.cookie = std::uint64_t{message.id.idiag_cookie[1]} << 32 | message.id.idiag_cookie[0];
  reading.inode = message.idiag_inode;
  reading.user = message.idiag_uid;
  reading.local = end(message.id.idiag_src, message.id.idiag_sport, isMapped);
  reading.remote = end(message.id.idiag_dst, message.id.idiag_dport, isMapped);
  reading.isLoopback =
      reading.local.address == reading.remote.address || isLoopbackAddress(reading.remote, isIpv4);
  reading.received = counters.tcpi_bytes_received + header * counters.tcpi_segs_in;
  reading.sent = counters.tcpi_bytes_sent + header * counters.tcpi_segs_out;
  return reading;
}

void add(NetlinkBytes datagram, TcpReadings& readings) {
  for (const TcpReading& reading : parseSockDiag(datagram)) {
    readings.insert_or_assign(reading.cookie, reading);
  }
}

} // namespace

std::vector<TcpReading> parseSockDiag(NetlinkBytes datagram) {
  std::vector<TcpReading> readings;
  forEachMessageOf<inet_diag_msg>(
      datagram, SOCK_DIAG_BY_FAMILY, [&](const inet_diag_msg& message, NetlinkBytes attributes) {
        const bool isIp = message.idiag_family == AF_INET || message.idiag_family == AF_INET6;
        const auto counters = isIp ? findCounters(attributes) : std::nullopt;
        if (counters) {
          readings.push_back(toReading(message, *counters));
        }
        return true;
      });
  return readings;
}

NetlinkRequest tcpRequest(std::uint8_t family) {
  inet_diag_req_v2 request{};
  request.sdiag_family = family;
  request.sdiag_protocol = IPPROTO_TCP;
  request.idiag_ext = 1U << (INET_DIAG_INFO - 1);
  request.idiag_states = wantedStates();
  return {SOCK_DIAG_BY_FAMILY, NLM_F_DUMP, request};
}

bool TcpSockets::addTo(TcpReadings& readings) {
  // A machine may lack IPv6.
  bool isAnswered = false;
  for (const std::uint8_t family : std::array<std::uint8_t, 2>{AF_INET, AF_INET6}) {
    NetlinkRequest request = tcpRequest(family);
    const auto take = [&readings](NetlinkBytes datagram) { add(datagram, readings); };
    isAnswered = m_socket.ask(request, take) || isAnswered;
  }
  return isAnswered;
}

TcpEnds::TcpEnds()
    : m_socket(openNetlinkGroups(NETLINK_SOCK_DIAG, netlinkGroup(SKNLGRP_INET_TCP_DESTROY) |
                                                        netlinkGroup(SKNLGRP_INET6_TCP_DESTROY))) {
  ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVBUF, &queueSize, sizeof queueSize);
}

void TcpEnds::addTo(TcpReadings& readings) const {
  std::array<std::byte, longestDatagram> buffer;
  while (true) {
    const ssize_t size = ::recv(m_socket.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (size >= 0) {
      add(std::span(buffer).first(static_cast<std::size_t>(size)), readings);
    } else if (errno != EINTR) {
      return;
    }
  }
}

} // namespace tidewell::nettop
