#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <linux/netlink.h>

namespace tidewell {

/// One question to the kernel over netlink, on a socket of its own.
class NetlinkQuestion {
public:
  /// A question of this message type; `flags` as in linux/netlink.h, NLM_F_REQUEST is added.
  NetlinkQuestion(std::uint16_t type, std::uint16_t flags);
  NetlinkQuestion(const NetlinkQuestion&) = delete;
  NetlinkQuestion& operator=(const NetlinkQuestion&) = delete;
  ~NetlinkQuestion() = default;

  /// Appends a protocol's own header, zeroed, for the caller to fill in.
  template <class Header> Header& addHeader() {
    return *static_cast<Header*>(addSpace(sizeof(Header)));
  }

  /// The message, for appending attributes with libmnl.
  [[nodiscard]] nlmsghdr* message() { return m_message; }

  /// Asks the kernel's part of this protocol (NETLINK_ROUTE, NETLINK_GENERIC) and waits for all
  /// messages of its answer, which are given back one behind the other; empty on any failure. Any
  /// thread.
  [[nodiscard]] std::vector<std::byte> ask(int protocol);

private:
  [[nodiscard]] void* addSpace(std::size_t size);

  alignas(8) std::array<std::byte, 256> m_bytes{};
  nlmsghdr* m_message;
};

} // namespace tidewell
