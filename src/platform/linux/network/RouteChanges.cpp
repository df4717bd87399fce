#include "platform/linux/network/RouteChanges.h"

#include "platform/linux/loop/EventLoop.h"

#include <cerrno>
#include <cstdint>
#include <utility>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace tidewell {

namespace {

constexpr Seconds quietTime = 0.1;
constexpr int mostWindows = 10;

// More than the socket's buffer holds, so that a flood cannot keep us reading.
constexpr int mostMessages = 4096;

constexpr std::uint32_t bit(rtnetlink_groups group) {
  return 1U << (static_cast<std::uint32_t>(group) - 1U);
}

// Rules too: some tunnels take the traffic by a rule alone.
constexpr std::uint32_t groups = bit(RTNLGRP_LINK) | bit(RTNLGRP_IPV4_IFADDR) |
                                 bit(RTNLGRP_IPV6_IFADDR) | bit(RTNLGRP_IPV4_ROUTE) |
                                 bit(RTNLGRP_IPV6_ROUTE) | bit(RTNLGRP_IPV4_RULE) |
                                 bit(RTNLGRP_IPV6_RULE);

FileDescriptor openSocket() {
  FileDescriptor socket(
      ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
  // An overrun needs no error: the messages that did fit tell that there is something to look at.
  const int on = 1;
  ::setsockopt(socket.get(), SOL_NETLINK, NETLINK_NO_ENOBUFS, &on, sizeof on);
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = groups;
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    socket.reset();
  }
  return socket;
}

} // namespace

RouteChanges::RouteChanges(EventLoop& loop, std::function<void()> observer)
    : m_loop(loop), m_observer(std::move(observer)), m_socket(openSocket()) {
  if (m_socket.isOpen()) {
    m_watch = loop.watch(m_socket.get(), EPOLLIN, [this](std::uint32_t) { beginWindow(); });
  }
}

RouteChanges::~RouteChanges() = default;

void RouteChanges::beginWindow() {
  if (m_window || !drain()) {
    return;
  }
  // Until the window ends nobody needs to be woken; what comes meanwhile waits in the socket.
  m_watch->setEvents(0);
  m_windows = 0;
  m_window = m_loop.repeat(quietTime, quietTime, [this] { endWindow(); });
}

void RouteChanges::endWindow() {
  const bool isQuiet = !drain();
  if (!isQuiet && ++m_windows < mostWindows) {
    return;
  }
  m_window.reset();
  m_watch->setEvents(EPOLLIN);
  m_observer();
}

bool RouteChanges::drain() const {
  bool heard = false;
  for (int count = 0; count < mostMessages; ++count) {
    char first = 0; // the kernel drops the rest of a message that does not fit
    if (::recv(m_socket.get(), &first, sizeof first, MSG_DONTWAIT) < 0) {
      if (errno == EAGAIN || errno == EWOULDBLOCK) {
        break;
      }
      if (errno == EINTR) {
        continue;
      }
    }
    heard = true;
  }
  return heard;
}

} // namespace tidewell
