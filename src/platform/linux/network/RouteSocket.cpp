#include "platform/linux/network/RouteSocket.h"

#include "platform/linux/network/NetlinkAttributes.h"
#include "platform/linux/network/NetlinkMessages.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace tidewell {

namespace {

// The kernel answers before send returns; the limit only keeps a fault from lasting.
constexpr timeval replyLimit{1, 0};

constexpr std::size_t requestSize = 256;

/// A request under construction.
struct Request {
  alignas(8) std::array<char, requestSize> bytes{};
  nlmsghdr* header = mnl_nlmsg_put_header(bytes.data());

  explicit Request(std::uint16_t type) {
    header->nlmsg_type = type;
    header->nlmsg_flags = NLM_F_REQUEST;
  }
};

} // namespace

std::optional<std::string> RouteSocket::interfaceName(int index) {
  const std::scoped_lock lock(m_mutex);
  ifreq query{};
  query.ifr_ifindex = index;
  if (!open() || ::ioctl(m_socket.get(), SIOCGIFNAME, &query) != 0) {
    return std::nullopt;
  }
  return std::string(query.ifr_name, strnlen(query.ifr_name, IFNAMSIZ));
}

// By ioctl: unlike a question for the link it never waits for an interface that is being made.
std::optional<InterfaceState> RouteSocket::interfaceState(int index) {
  auto name = interfaceName(index);
  if (!name) {
    return std::nullopt;
  }
  const std::scoped_lock lock(m_mutex);
  ifreq query{};
  name->copy(query.ifr_name, IFNAMSIZ - 1);
  if (!open() || ::ioctl(m_socket.get(), SIOCGIFFLAGS, &query) != 0) {
    return std::nullopt;
  }
  const auto flags = static_cast<unsigned short>(query.ifr_flags);
  constexpr unsigned wanted = IFF_UP | IFF_RUNNING;
  const bool isRunning = (flags & (wanted | IFF_LOOPBACK)) == wanted;
  return InterfaceState{std::move(*name), isRunning};
}

std::optional<Route> RouteSocket::route(unsigned char family,
                                        std::span<const std::uint8_t> address) {
  const std::scoped_lock lock(m_mutex);
  Request request(RTM_GETROUTE);
  auto* route = static_cast<rtmsg*>(mnl_nlmsg_put_extra_header(request.header, sizeof(rtmsg)));
  route->rtm_family = family;
  route->rtm_dst_len = static_cast<unsigned char>(address.size() * 8);
  mnl_attr_put(request.header, RTA_DST, address.size(), address.data());
  const Reply reply = ask(request.header);
  const auto index = parseRouteInterface(reply);
  if (!index) {
    return std::nullopt;
  }
  return Route{*index, parseRouteSource(reply).value_or("")};
}

bool RouteSocket::open() {
  if (m_socket.isOpen()) {
    return true;
  }
  m_socket = FileDescriptor(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
  if (!m_socket.isOpen()) {
    return false;
  }
  ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &replyLimit, sizeof replyLimit);
  return true;
}

RouteSocket::Reply RouteSocket::ask(void* request) {
  auto* header = static_cast<nlmsghdr*>(request);
  if (!open()) {
    return {};
  }
  header->nlmsg_seq = ++m_sequence;
  sockaddr_nl kernel{};
  kernel.nl_family = AF_NETLINK;
  const auto sent = ::sendto(m_socket.get(), header, header->nlmsg_len, 0,
                             reinterpret_cast<const sockaddr*>(&kernel), sizeof kernel);
  if (sent < 0) {
    m_socket.reset();
    return {};
  }
  return receive(header->nlmsg_seq);
}

RouteSocket::Reply RouteSocket::receive(std::uint32_t sequence) {
  while (true) {
    sockaddr_nl sender{};
    socklen_t senderSize = sizeof sender;
    const auto size = ::recvfrom(m_socket.get(), m_buffer.data(), m_buffer.size(), MSG_TRUNC,
                                 reinterpret_cast<sockaddr*>(&sender), &senderSize);
    if (size < 0 && errno == EINTR) {
      continue;
    }
    if (size < 0 || static_cast<std::size_t>(size) > m_buffer.size()) {
      m_socket.reset();
      return {};
    }
    const auto* header = reinterpret_cast<const nlmsghdr*>(m_buffer.data());
    const bool mine = sender.nl_pid == 0 && isWhole(header, static_cast<int>(size)) &&
                      header->nlmsg_seq == sequence;
    if (mine) {
      return Reply(m_buffer).first(static_cast<std::size_t>(size));
    }
  }
}

} // namespace tidewell
