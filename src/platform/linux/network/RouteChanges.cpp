#include "platform/linux/network/RouteChanges.h"

#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/network/NetlinkSocket.h"

#include <cerrno>
#include <cstdint>
#include <utility>

#include <linux/rtnetlink.h>
#include <sys/epoll.h>
#include <sys/socket.h>

namespace tidewell {
namespace {

constexpr Seconds quietTime = 0.1;
constexpr Seconds untilNextAttempt = 1.0;
constexpr int mostWindows = 10;

// More than the socket's buffer holds, so a flood cannot keep the loop busy.
constexpr int mostMessages = 4096;

// Includes rules, because some tunnels take the traffic by a rule alone.
constexpr std::uint32_t groups = netlinkGroup(RTNLGRP_LINK) | netlinkGroup(RTNLGRP_IPV4_IFADDR) |
                                 netlinkGroup(RTNLGRP_IPV6_IFADDR) |
                                 netlinkGroup(RTNLGRP_IPV4_ROUTE) |
                                 netlinkGroup(RTNLGRP_IPV6_ROUTE) |
                                 netlinkGroup(RTNLGRP_IPV4_RULE) | netlinkGroup(RTNLGRP_IPV6_RULE);

} // namespace

RouteChanges::RouteChanges(EventLoop& loop, std::function<void()> observer)
    : m_loop(loop), m_observer(std::move(observer)) {
  if (open()) {
    return;
  }
  m_timer = m_loop.repeat(untilNextAttempt, untilNextAttempt, [this] {
    if (open()) {
      m_timer.reset();
      m_observer();
    }
  });
}

RouteChanges::~RouteChanges() = default;

bool RouteChanges::open() {
  m_socket = openNetlinkGroups(NETLINK_ROUTE, groups);
  if (m_socket.isOpen()) {
    m_watch = m_loop.watch(m_socket.get(), EPOLLIN, [this](std::uint32_t) { beginWindow(); });
  }
  return m_watch != nullptr;
}

void RouteChanges::beginWindow() {
  if (m_timer || !drain()) {
    return;
  }
  // Messages wait in the socket until the window ends.
  m_watch->setEvents(0);
  m_windows = 0;
  m_timer = m_loop.repeat(quietTime, quietTime, [this] { endWindow(); });
}

void RouteChanges::endWindow() {
  const bool isQuiet = !drain();
  if (!isQuiet && ++m_windows < mostWindows) {
    return;
  }
  m_timer.reset();
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
