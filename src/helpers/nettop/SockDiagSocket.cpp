#include "helpers/nettop/SockDiagSocket.h"

#include "helpers/nettop/SockDiagMessages.h"

#include <cerrno>
#include <span>

#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <sys/socket.h>

namespace tidewell::nettop {

namespace {

// The kernel fills as much of an answer into one datagram as its reader takes, up to this.
constexpr std::size_t datagramSize = 32768;
constexpr int queueSize = 4 << 20; // the kernel allows what it sees fit

FileDescriptor openSocket(std::uint32_t groups) {
  FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG));
  if (socket.isOpen()) {
    ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVBUF, &queueSize, sizeof queueSize);
  }
  sockaddr_nl address{};
  address.nl_family = AF_NETLINK;
  address.nl_groups = groups;
  const bool isBound =
      socket.isOpen() &&
      ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  return isBound ? std::move(socket) : FileDescriptor();
}

void add(const std::vector<TcpReading>& readings, TcpReadings& to) {
  for (const TcpReading& reading : readings) {
    to.insert_or_assign(reading.cookie, reading);
  }
}

/// The next datagram; empty when there is none.
std::span<const std::byte> receive(const FileDescriptor& socket, std::vector<std::byte>& buffer,
                                   int flags) {
  while (true) {
    const ssize_t size = ::recv(socket.get(), buffer.data(), buffer.size(), flags);
    if (size >= 0) {
      return std::span(buffer).first(static_cast<std::size_t>(size));
    }
    // ENOBUFS says that something was lost before what comes now.
    if (errno != EINTR && errno != ENOBUFS) {
      return {};
    }
  }
}

} // namespace

SockDiagSocket::SockDiagSocket() : m_socket(openSocket(0)), m_buffer(datagramSize) {}

bool SockDiagSocket::ask(TcpReadings& readings) {
  // A machine may be without IPv6.
  const bool hasIpv4 = ask(AF_INET, readings);
  const bool hasIpv6 = ask(AF_INET6, readings);
  return hasIpv4 || hasIpv6;
}

bool SockDiagSocket::ask(std::uint8_t family, TcpReadings& readings) {
  using End = SockDiagMessages::End;
  const auto question = tcpQuestion(family);
  if (::send(m_socket.get(), question.data(), question.size(), 0) < 0) {
    return false;
  }
  while (true) {
    const auto datagram = receive(m_socket, m_buffer, 0);
    const SockDiagMessages messages = parseSockDiag(datagram);
    add(messages.readings, readings);
    if (datagram.empty() || messages.end != End::none) {
      return messages.end == End::done;
    }
  }
}

TcpEnds::TcpEnds()
    : m_socket(
          openSocket(1U << (SKNLGRP_INET_TCP_DESTROY - 1) | 1U << (SKNLGRP_INET6_TCP_DESTROY - 1))),
      m_buffer(datagramSize) {}

void TcpEnds::take(TcpReadings& readings) {
  while (m_socket.isOpen()) {
    const auto datagram = receive(m_socket, m_buffer, MSG_DONTWAIT);
    if (datagram.empty()) {
      return;
    }
    add(parseSockDiag(datagram).readings, readings);
  }
}

} // namespace tidewell::nettop
