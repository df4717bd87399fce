#pragma once

#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/network/NetlinkMessages.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

struct ifreq;

namespace tidewell {

/// Asks the kernel over netlink. The socket is opened at the first request, and again at the next
/// one after an error.
class NetlinkSocket {
public:
  /// `protocol` as in linux/netlink.h: NETLINK_ROUTE, NETLINK_GENERIC, NETLINK_SOCK_DIAG.
  explicit NetlinkSocket(int protocol) : m_protocol(protocol) {}

  /// Sends the request and passes on each datagram of the answer. Waits at most a second for each.
  /// Returns false if the kernel refuses or the answer is incomplete.
  [[nodiscard]] bool ask(NetlinkRequest& request, const std::function<void(NetlinkBytes)>& take);

  /// Sends the request and returns all messages of the answer, of at most 1 MiB; empty on any
  /// failure.
  [[nodiscard]] std::vector<std::byte> ask(NetlinkRequest request);

  /// Runs a device ioctl (netdevice(7)) on the socket. Returns false on any failure.
  [[nodiscard]] bool control(unsigned long command, ifreq& query);

private:
  [[nodiscard]] bool open();
  [[nodiscard]] bool send(NetlinkBytes request) const;
  [[nodiscard]] NetlinkBytes receive(std::span<std::byte> buffer) const;

  int m_protocol;
  FileDescriptor m_socket;
  std::unique_ptr<std::byte[]> m_buffer;
  std::uint32_t m_sequence = 0;
};

/// Opens a non-blocking socket that receives the messages of multicast groups, as a mask. Messages
/// that do not fit its buffer are lost without an error. Closed if the kernel gives none.
[[nodiscard]] FileDescriptor openNetlinkGroups(int protocol, std::uint32_t groups);

/// The bit of a multicast group in the mask.
constexpr std::uint32_t netlinkGroup(int number) { return 1U << (number - 1); }

} // namespace tidewell
