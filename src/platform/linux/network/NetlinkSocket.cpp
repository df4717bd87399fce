#include "platform/linux/network/NetlinkSocket.h"

#include <cerrno>
#include <memory>

#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace tidewell {
namespace {

// The kernel answers before send returns. The limit only ends a wait for a faulty kernel.
constexpr timeval replyLimit{1, 0};

// The kernel's longest datagram in a dump.
constexpr std::size_t longestDatagram = 32768;

// Far more than the addresses or wireless interfaces of any machine.
constexpr std::size_t largestAnswer = 1U << 20U;

sockaddr_nl kernelAddress(std::uint32_t groups = 0) {
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = groups;
  return address;
}

bool answers(NetlinkBytes datagram, std::uint32_t sequence) {
  const auto header = netlinkValue<nlmsghdr>(datagram);
  return header && header->nlmsg_seq == sequence;
}

} // namespace

bool NetlinkSocket::ask(NetlinkRequest& request, const std::function<void(NetlinkBytes)>& take) {
  if (!open() || !send(request.bytes(++m_sequence))) {
    m_socket.reset();
    return false;
  }
  auto progress = NetlinkProgress::unfinished;
  while (progress == NetlinkProgress::unfinished) {
    const NetlinkBytes datagram = receive({m_buffer.get(), longestDatagram});
    if (datagram.empty()) {
      m_socket.reset();
      return false;
    }
    take(datagram);
    progress = netlinkProgress(datagram);
  }
  return progress == NetlinkProgress::complete;
}

std::vector<std::byte> NetlinkSocket::ask(NetlinkRequest request) {
  std::vector<std::byte> answer;
  const bool isWhole = ask(request, [&answer](NetlinkBytes datagram) {
    if (answer.size() < largestAnswer) {
      answer.insert(answer.end(), datagram.begin(), datagram.end());
      answer.resize(NLMSG_ALIGN(answer.size()));
    }
  });
  return isWhole && answer.size() < largestAnswer ? answer : std::vector<std::byte>();
}

bool NetlinkSocket::control(unsigned long command, ifreq& query) {
  return open() && ::ioctl(m_socket.get(), command, &query) == 0;
}

bool NetlinkSocket::open() {
  if (!m_buffer) {
    // Kept, and not on the stack, whose protection would write to each of its pages.
    m_buffer = std::make_unique_for_overwrite<std::byte[]>(longestDatagram);
  }
  if (!m_socket.isOpen()) {
    m_socket = FileDescriptor(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, m_protocol));
    ::setsockopt(m_socket.get(), SOL_SOCKET, SO_RCVTIMEO, &replyLimit, sizeof replyLimit);
    // Older kernels ignore the filters of a request, so the parsers filter as well.
    const int on = 1;
    ::setsockopt(m_socket.get(), SOL_NETLINK, NETLINK_GET_STRICT_CHK, &on, sizeof on);
  }
  return m_socket.isOpen();
}

bool NetlinkSocket::send(NetlinkBytes request) const {
  const sockaddr_nl kernel = kernelAddress();
  return ::sendto(m_socket.get(), request.data(), request.size(), 0,
                  reinterpret_cast<const sockaddr*>(&kernel), sizeof kernel) >= 0;
}

/// The next datagram of the answer to the latest request; empty on failure.
NetlinkBytes NetlinkSocket::receive(std::span<std::byte> buffer) const {
  while (true) {
    sockaddr_nl sender{};
    socklen_t senderSize = sizeof sender;
    const auto size = ::recvfrom(m_socket.get(), buffer.data(), buffer.size(), MSG_TRUNC,
                                 reinterpret_cast<sockaddr*>(&sender), &senderSize);
    if (size < 0 && errno == EINTR) {
      continue;
    }
    if (size < 0 || static_cast<std::size_t>(size) > buffer.size()) {
      return {};
    }
    const NetlinkBytes datagram = buffer.first(static_cast<std::size_t>(size));
    // Programs can send to this socket, too.
    if (sender.nl_pid == 0 && answers(datagram, m_sequence)) {
      return datagram;
    }
  }
}

FileDescriptor openNetlinkGroups(int protocol, std::uint32_t groups) {
  FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol));
  const int on = 1;
  ::setsockopt(socket.get(), SOL_NETLINK, NETLINK_NO_ENOBUFS, &on, sizeof on);
  const sockaddr_nl address = kernelAddress(groups);
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    socket.reset();
  }
  return socket;
}

} // namespace tidewell
