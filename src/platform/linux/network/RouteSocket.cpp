#include "platform/linux/network/RouteSocket.h"

#include <array>
#include <cstring>
#include <utility>

#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tidewell {
namespace {

// Cloudflare's public resolver, which is never inside a private network.
constexpr std::array<unsigned char, 4> publicAddress4 = {1, 1, 1, 1};
constexpr std::array<unsigned char, 16> publicAddress6 = {
    0x26, 0x06, 0x47, 0x00, 0x47, 0x00, 0, 0, 0, 0, 0, 0, 0, 0, 0x11, 0x11};

std::string_view textOf(NetlinkBytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

std::optional<RouteReply> parseRoute(NetlinkBytes reply) {
  std::optional<int> index;
  std::string source;
  forEachMessageOf<rtmsg>(reply, RTM_NEWROUTE, [&](const rtmsg& header, NetlinkBytes attributes) {
    forEachAttribute(attributes, [&](std::uint16_t type, NetlinkBytes value) {
      if (type == RTA_OIF && header.rtm_type == RTN_UNICAST) {
        index = netlinkValue<int>(value);
      } else if (type == RTA_PREFSRC) {
        source = textOf(value);
      }
    });
    return false;
  });
  return index ? std::optional(RouteReply{*index, std::move(source)}) : std::nullopt;
}

std::optional<PublicRoute> RouteSocket::publicRoute() {
  auto first = route(AF_INET, std::as_bytes(std::span(publicAddress4)));
  if (first && first->isRunning) {
    return first;
  }
  auto second = route(AF_INET6, std::as_bytes(std::span(publicAddress6)));
  const bool secondIsBetter = second && (second->isRunning || !first);
  return secondIsBetter ? second : first;
}

std::optional<PublicRoute> RouteSocket::route(unsigned char family, NetlinkBytes address) {
  rtmsg header{};
  header.rtm_family = family;
  header.rtm_dst_len = static_cast<unsigned char>(address.size() * 8);
  NetlinkRequest request(RTM_GETROUTE, 0, header);
  auto reply = parseRoute(m_socket.ask(request.add(RTA_DST, textOf(address))));
  auto name = reply ? interfaceName(reply->interfaceIndex) : std::nullopt;
  const auto isUp = name ? isRunning(*name) : std::nullopt;
  if (!isUp) {
    return std::nullopt;
  }
  return PublicRoute{reply->interfaceIndex, std::move(*name),
                     family == AF_INET ? std::move(reply->source) : std::string(), *isUp};
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
