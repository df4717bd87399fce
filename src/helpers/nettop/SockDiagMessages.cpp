#include "helpers/nettop/SockDiagMessages.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <type_traits>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>
#include <netinet/in.h>

namespace tidewell::nettop {

namespace {

using Bytes = std::span<const std::byte>;

// Without options; the one that nearly every segment carries stands beside it.
constexpr std::uint64_t tcpHeader = 20;
constexpr std::uint64_t timestampOption = 12;
constexpr std::uint64_t ipv4Header = 20;
constexpr std::uint64_t ipv6Header = 40;

// Numbers of TCP's states, of which the kernel's public headers have no list.
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

constexpr std::size_t aligned(std::size_t size) { return (size + 3) & ~std::size_t{3}; }

template <class T> std::optional<T> read(Bytes bytes) {
  static_assert(std::is_trivially_copyable_v<T>);
  if (bytes.size() < sizeof(T)) {
    return std::nullopt;
  }
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

/// The part of the bytes that one record of `size` bytes covers, and what follows it.
Bytes take(Bytes& bytes, std::size_t size) {
  const Bytes part = bytes.first(size);
  bytes = bytes.subspan(std::min(aligned(size), bytes.size()));
  return part;
}

/// The TCP counters among the attributes; all zero beyond what an older kernel knows.
std::optional<tcp_info> findCounters(Bytes attributes) {
  while (const auto header = read<nlattr>(attributes)) {
    if (header->nla_len < sizeof(nlattr) || header->nla_len > attributes.size()) {
      break;
    }
    const Bytes value = take(attributes, header->nla_len).subspan(aligned(sizeof(nlattr)));
    if ((header->nla_type & NLA_TYPE_MASK) == INET_DIAG_INFO) {
      tcp_info counters{};
      std::memcpy(&counters, value.data(), std::min(value.size(), sizeof counters));
      return counters;
    }
  }
  return std::nullopt;
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

void readSocket(Bytes payload, SockDiagMessages& result) {
  const auto message = read<inet_diag_msg>(payload);
  if (!message || (message->idiag_family != AF_INET && message->idiag_family != AF_INET6)) {
    return;
  }
  const auto counters =
      findCounters(payload.subspan(std::min(aligned(sizeof(inet_diag_msg)), payload.size())));
  if (counters) {
    result.readings.push_back(toReading(*message, *counters));
  }
}

} // namespace

SockDiagMessages parseSockDiag(std::span<const std::byte> bytes) {
  SockDiagMessages result;
  while (const auto header = read<nlmsghdr>(bytes)) {
    if (header->nlmsg_len < sizeof(nlmsghdr) || header->nlmsg_len > bytes.size()) {
      break;
    }
    const Bytes payload = take(bytes, header->nlmsg_len).subspan(sizeof(nlmsghdr));
    switch (header->nlmsg_type) {
    case NLMSG_DONE:
      result.end = SockDiagMessages::End::done;
      return result;
    case NLMSG_ERROR:
      result.end = SockDiagMessages::End::failed;
      return result;
    case SOCK_DIAG_BY_FAMILY:
      readSocket(payload, result);
      break;
    default:
      break;
    }
  }
  return result;
}

std::vector<std::byte> tcpQuestion(std::uint8_t family) {
  nlmsghdr header{};
  inet_diag_req_v2 request{};
  header.nlmsg_len = sizeof header + sizeof request;
  header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
  header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
  request.sdiag_family = family;
  request.sdiag_protocol = IPPROTO_TCP;
  request.idiag_ext = 1U << (INET_DIAG_INFO - 1);
  request.idiag_states = wantedStates();
  std::vector<std::byte> question(header.nlmsg_len);
  std::memcpy(question.data(), &header, sizeof header);
  std::memcpy(question.data() + sizeof header, &request, sizeof request);
  return question;
}

} // namespace tidewell::nettop
