#include "platform/linux/network/RouteSocket.h"

#include <array>
#include <cstring>
#include <utility>

#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tidewell {
namespace {

template <std::size_t size> using Addresses = std::array<std::array<unsigned char, size>, 3>;

// Addresses of no service, in blocks of three registries: nobody routes them apart from the rest,
// as is usual for DNS servers. Two that agree outvote one that happens to lie in a network that is
// routed apart.
constexpr Addresses<4> witnesses4 = {{{63, 64, 0, 1}, {151, 64, 0, 1}, {203, 64, 0, 1}}};
constexpr Addresses<16> witnesses6 = {{{0x26, 0x00, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                       {0x2A, 0x02, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1},
                                       {0x24, 0x00, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}}};

template <std::size_t size> std::array<NetlinkBytes, 3> bytesOf(const Addresses<size>& addresses) {
  return {std::as_bytes(std::span(addresses[0])), std::as_bytes(std::span(addresses[1])),
          std::as_bytes(std::span(addresses[2]))};
}

bool isSameInterface(const std::optional<RouteReply>& one, const std::optional<RouteReply>& other) {
  return one && other ? one->interfaceIndex == other->interfaceIndex : !one && !other;
}

/// Whether this is an address that RFC 7335 reserves for translators from IPv4 to IPv6:
/// 192.0.0.0/29.
bool isTranslators(std::string_view source) {
  return source.starts_with(std::string_view("\xC0\0\0", 3)) && source.size() == 4 &&
         static_cast<unsigned char>(source[3]) < 8;
}

std::string_view textOf(NetlinkBytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

std::optional<RouteReply> parseRoute(NetlinkBytes reply) {
  std::optional<int> index;
  std::string source;
  std::string gateway;
  forEachMessageOf<rtmsg>(reply, RTM_NEWROUTE, [&](const rtmsg& header, NetlinkBytes attributes) {
    forEachAttribute(attributes, [&](std::uint16_t type, NetlinkBytes value) {
      if (type == RTA_OIF && header.rtm_type == RTN_UNICAST) {
        index = netlinkValue<int>(value);
      } else if (type == RTA_PREFSRC) {
        source = textOf(value);
      } else if (type == RTA_GATEWAY) {
        gateway = textOf(value);
      } else if (type == RTA_VIA && value.size() > sizeof(rtvia::rtvia_family)) {
        gateway = textOf(value.subspan(sizeof(rtvia::rtvia_family)));
      }
    });
    return false;
  });
  return index ? std::optional(RouteReply{*index, std::move(source), std::move(gateway)})
               : std::nullopt;
}

std::optional<PublicRoute> RouteSocket::publicRoute() {
  auto first = route(bytesOf(witnesses4));
  if (first && first->isRunning && !isTranslators(first->sourceIPv4)) {
    return first;
  }
  auto second = route(bytesOf(witnesses6));
  const bool secondIsBetter = second && (second->isRunning || !first);
  return secondIsBetter ? second : first;
}

std::optional<PublicRoute> RouteSocket::route(std::span<const NetlinkBytes, 3> witnesses) {
  auto chosen = replyFor(witnesses[0]);
  auto second = replyFor(witnesses[1]);
  if (!isSameInterface(chosen, second) && isSameInterface(second, replyFor(witnesses[2]))) {
    chosen = std::move(second);
  }
  auto name = chosen ? interfaceName(chosen->interfaceIndex) : std::nullopt;
  const auto isUp = name ? isRunning(*name) : std::nullopt;
  if (!isUp) {
    return std::nullopt;
  }
  const bool isIPv4 = witnesses[0].size() == sizeof(in_addr);
  return PublicRoute{chosen->interfaceIndex, std::move(*name),
                     isIPv4 ? std::move(chosen->source) : std::string(), std::move(chosen->gateway),
                     *isUp};
}

std::optional<RouteReply> RouteSocket::replyFor(NetlinkBytes address) {
  rtmsg header{};
  header.rtm_family = address.size() == sizeof(in_addr) ? AF_INET : AF_INET6;
  header.rtm_dst_len = static_cast<unsigned char>(address.size() * 8);
  NetlinkRequest request(RTM_GETROUTE, 0, header);
  return parseRoute(m_socket.ask(request.add(RTA_DST, textOf(address))));
}

std::optional<std::string> RouteSocket::interfaceName(int index) {
  ifreq query{};
  query.ifr_ifindex = index;
  if (!m_socket.control(SIOCGIFNAME, query)) {
    return std::nullopt;
  }
  return std::string(query.ifr_name, strnlen(query.ifr_name, IFNAMSIZ));
}

// An ioctl never waits for an interface that is being made, unlike a netlink request for a link.
std::optional<bool> RouteSocket::isRunning(const std::string& interface) {
  ifreq query{};
  interface.copy(query.ifr_name, IFNAMSIZ - 1);
  if (!m_socket.control(SIOCGIFFLAGS, query)) {
    return std::nullopt;
  }
  constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
  return (static_cast<unsigned short>(query.ifr_flags) & (wanted | IFF_LOOPBACK)) == wanted;
}

} // namespace tidewell
