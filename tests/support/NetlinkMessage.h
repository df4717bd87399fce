#pragma once

#include "platform/linux/network/NetlinkMessages.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tidewell::test {

/// A netlink message as the kernel would send it.
class NetlinkMessage {
public:
  template <class Header>
  NetlinkMessage(std::uint16_t type, const Header& header) : m_message(type, 0, header) {}

  NetlinkMessage& text(std::uint16_t type, const std::string& value) {
    return data(type, {value.c_str(), value.size() + 1});
  }
  NetlinkMessage& data(std::uint16_t type, std::string_view value) {
    m_message.add(type, value);
    return *this;
  }
  template <class T> NetlinkMessage& number(std::uint16_t type, T value) {
    m_message.addValue(type, value);
    return *this;
  }
  std::vector<std::byte> bytes() {
    const auto bytes = m_message.bytes();
    return {bytes.begin(), bytes.end()};
  }

private:
  NetlinkRequest m_message;
};

inline std::vector<std::byte> operator+(std::vector<std::byte> left,
                                        const std::vector<std::byte>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

} // namespace tidewell::test
