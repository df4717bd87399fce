#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string>
#include <type_traits>

#include <libmnl/libmnl.h>
#include <linux/netlink.h>

namespace tidewell {

/// Whether a message stands whole in the `left` bytes from its header on. mnl_nlmsg_ok alone takes
/// a length beyond two gigabytes for a negative one and lets it pass.
inline bool isWhole(const nlmsghdr* message, int left) {
  return left >= static_cast<int>(sizeof(nlmsghdr)) &&
         message->nlmsg_len <= static_cast<std::uint32_t>(left) && mnl_nlmsg_ok(message, left);
}

/// Calls `visit(const nlmsghdr&)` for each complete message in the bytes until it returns false.
template <class Visit> void forEachMessage(std::span<const std::byte> bytes, Visit&& visit) {
  // libmnl reads headers in place; netlink buffers are aligned for them.
  const auto* message = reinterpret_cast<const nlmsghdr*>(bytes.data());
  int left = static_cast<int>(bytes.size());
  while (isWhole(message, left)) {
    if (!visit(*message)) {
      return;
    }
    message = mnl_nlmsg_next(message, &left);
  }
}

/// The fixed header behind the message's own; none when the message is too short for it.
template <class Header> std::optional<Header> readHeader(const nlmsghdr& message) {
  static_assert(std::is_trivially_copyable_v<Header>);
  if (mnl_nlmsg_get_payload_len(&message) < sizeof(Header)) {
    return std::nullopt;
  }
  Header header;
  std::memcpy(&header, mnl_nlmsg_get_payload(&message), sizeof header);
  return header;
}

/// Calls `visit(const nlattr&)` for each complete attribute in these bytes.
template <class Visit> void forEachAttributeIn(std::span<const std::byte> bytes, Visit&& visit) {
  const auto* attribute = reinterpret_cast<const nlattr*>(bytes.data());
  const auto* const end = bytes.data() + bytes.size();
  while (true) {
    const auto left = end - reinterpret_cast<const std::byte*>(attribute);
    if (left <= 0 || !mnl_attr_ok(attribute, static_cast<int>(left))) {
      return;
    }
    visit(*attribute);
    attribute = mnl_attr_next(attribute);
  }
}

/// The same for each attribute behind a fixed header of type Header, whose presence `readHeader`
/// has shown.
template <class Header, class Visit> void forEachAttribute(const nlmsghdr& message, Visit&& visit) {
  const auto* const begin =
      static_cast<const std::byte*>(mnl_nlmsg_get_payload_offset(&message, sizeof(Header)));
  // libmnl's own tail is rounded up, beyond the bytes of a message of odd length.
  const auto* const end = reinterpret_cast<const std::byte*>(&message) + message.nlmsg_len;
  if (begin < end) {
    forEachAttributeIn({begin, end}, visit);
  }
}

/// The attribute's value, whatever is in it.
inline std::span<const std::byte> attributeBytes(const nlattr& attribute) {
  return {static_cast<const std::byte*>(mnl_attr_get_payload(&attribute)),
          mnl_attr_get_payload_len(&attribute)};
}

/// The attribute's value as a T; none when it is shorter. Longer values are newer kernels'
/// business.
template <class T> std::optional<T> attributeValue(const nlattr& attribute) {
  static_assert(std::is_trivially_copyable_v<T>);
  if (mnl_attr_get_payload_len(&attribute) < sizeof(T)) {
    return std::nullopt;
  }
  T value;
  std::memcpy(&value, mnl_attr_get_payload(&attribute), sizeof value);
  return value;
}

/// The attribute's text up to its first NUL or its end.
inline std::string attributeText(const nlattr& attribute) {
  const auto* text = static_cast<const char*>(mnl_attr_get_payload(&attribute));
  return {text, strnlen(text, mnl_attr_get_payload_len(&attribute))};
}

} // namespace tidewell
