#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include <libmnl/libmnl.h>

namespace tidewell::test {

/// A netlink message as the kernel would send it.
class NetlinkMessage {
public:
  template <class Header> NetlinkMessage(std::uint16_t type, const Header& header) : m_bytes(4096) {
    mnl_nlmsg_put_header(m_bytes.data())->nlmsg_type = type;
    std::memcpy(mnl_nlmsg_put_extra_header(message(), sizeof header), &header, sizeof header);
  }
  NetlinkMessage& text(std::uint16_t type, const char* value) {
    mnl_attr_put_strz(message(), type, value);
    return *this;
  }
  NetlinkMessage& data(std::uint16_t type, std::string_view value) {
    mnl_attr_put(message(), type, value.size(), value.data());
    return *this;
  }
  template <class T> NetlinkMessage& number(std::uint16_t type, T value) {
    mnl_attr_put(message(), type, sizeof value, &value);
    return *this;
  }
  std::vector<std::byte> bytes() {
    const auto size = static_cast<std::ptrdiff_t>(message()->nlmsg_len);
    return {m_bytes.begin(), m_bytes.begin() + size};
  }

private:
  nlmsghdr* message() { return reinterpret_cast<nlmsghdr*>(m_bytes.data()); }

  std::vector<std::byte> m_bytes;
};

inline std::vector<std::byte> operator+(std::vector<std::byte> left,
                                        const std::vector<std::byte>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

} // namespace tidewell::test
