#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include <linux/netlink.h>

namespace tidewell {

/// The bytes of messages, attributes and values.
using NetlinkBytes = std::span<const std::byte>;

/// A request to the kernel: a protocol's own header, and attributes after it.
class NetlinkRequest {
public:
  /// `flags` as in linux/netlink.h; NLM_F_REQUEST is added.
  template <class Header>
  NetlinkRequest(std::uint16_t type, std::uint16_t flags, const Header& header)
      : m_header{0, type, static_cast<std::uint16_t>(NLM_F_REQUEST | flags), 0, 0} {
    append(&m_header, sizeof m_header);
    append(&header, sizeof header);
  }

  /// Appends an attribute of at most 65,531 bytes.
  NetlinkRequest& add(std::uint16_t type, std::string_view value) {
    const nlattr header{static_cast<std::uint16_t>(sizeof(nlattr) + value.size()), type};
    append(&header, sizeof header);
    append(value.data(), value.size());
    return *this;
  }
  template <class T> NetlinkRequest& addValue(std::uint16_t type, const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    return add(type, {reinterpret_cast<const char*>(&value), sizeof value});
  }

  /// The whole message, with this sequence number.
  [[nodiscard]] NetlinkBytes bytes(std::uint32_t sequence = 0) {
    m_header.nlmsg_len = static_cast<std::uint32_t>(m_bytes.size());
    m_header.nlmsg_seq = sequence;
    std::memcpy(m_bytes.data(), &m_header, sizeof m_header);
    return m_bytes;
  }

private:
  void append(const void* data, std::size_t size) {
    const auto* const begin = static_cast<const std::byte*>(data);
    m_bytes.insert(m_bytes.end(), begin, begin + size);
    m_bytes.resize(NLMSG_ALIGN(m_bytes.size()));
  }

  nlmsghdr m_header;
  std::vector<std::byte> m_bytes;
};

/// The value that the bytes begin with. Returns nullopt if they are too short for it; values of
/// newer kernels may be longer.
template <class T> std::optional<T> netlinkValue(NetlinkBytes bytes) {
  static_assert(std::is_trivially_copyable_v<T>);
  if (bytes.size() < sizeof(T)) {
    return std::nullopt;
  }
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

/// The bytes from `begin` on, which is rounded up to netlink's alignment; empty beyond their end.
inline NetlinkBytes netlinkTail(NetlinkBytes bytes, std::size_t begin) {
  return bytes.subspan(std::min<std::size_t>(NLMSG_ALIGN(begin), bytes.size()));
}

/// Calls `visit(const nlmsghdr&, NetlinkBytes payload)` for each complete message until it returns
/// false.
template <class Visit> void forEachMessage(NetlinkBytes bytes, Visit&& visit) {
  while (const auto header = netlinkValue<nlmsghdr>(bytes)) {
    const std::size_t size = header->nlmsg_len;
    if (size < sizeof(nlmsghdr) || size > bytes.size() ||
        !visit(*header, bytes.subspan(sizeof(nlmsghdr), size - sizeof(nlmsghdr)))) {
      return;
    }
    bytes = netlinkTail(bytes, size);
  }
}

/// Calls `visit(const Header&, NetlinkBytes attributes)` for each message of this type that is long
/// enough for the header, until it returns false.
template <class Header, class Visit>
void forEachMessageOf(NetlinkBytes bytes, std::uint16_t type, Visit&& visit) {
  forEachMessage(bytes, [&](const nlmsghdr& message, NetlinkBytes payload) {
    const auto header = netlinkValue<Header>(payload);
    return message.nlmsg_type != type || !header ||
           visit(*header, netlinkTail(payload, sizeof(Header)));
  });
}

/// Calls `visit(std::uint16_t type, NetlinkBytes value)` for each complete attribute.
template <class Visit> void forEachAttribute(NetlinkBytes bytes, Visit&& visit) {
  while (const auto header = netlinkValue<nlattr>(bytes)) {
    const std::size_t size = header->nla_len;
    if (size < sizeof(nlattr) || size > bytes.size()) {
      return;
    }
    visit(static_cast<std::uint16_t>(header->nla_type & NLA_TYPE_MASK),
          bytes.subspan(sizeof(nlattr), size - sizeof(nlattr)));
    bytes = netlinkTail(bytes, size);
  }
}

/// How far an answer has come with a datagram.
enum class NetlinkProgress {
  unfinished, // more datagrams follow
  complete,
  refused, // the kernel reports an error
};

/// Reads how far an answer has come. Any bytes may be given. Pure.
inline NetlinkProgress netlinkProgress(NetlinkBytes datagram) {
  auto progress = NetlinkProgress::complete;
  forEachMessage(datagram, [&](const nlmsghdr& message, NetlinkBytes) {
    const bool isMore =
        (message.nlmsg_flags & NLM_F_MULTI) != 0 && message.nlmsg_type != NLMSG_DONE;
    progress = isMore ? NetlinkProgress::unfinished : NetlinkProgress::complete;
    if (message.nlmsg_type == NLMSG_ERROR) {
      progress = NetlinkProgress::refused;
    }
    return progress == NetlinkProgress::unfinished;
  });
  return progress;
}

} // namespace tidewell
