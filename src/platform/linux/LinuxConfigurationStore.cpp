#include "platform/linux/LinuxConfigurationStore.h"

#include "platform/linux/RouteSocket.h"

#include <array>
#include <cstdint>

#include <sys/socket.h>

namespace tidewell {

namespace {

// Cloudflare's public resolver: never inside a private network. Nothing is sent to it here.
constexpr std::array<std::uint8_t, 4> publicAddress4 = {1, 1, 1, 1};
constexpr std::array<std::uint8_t, 16> publicAddress6 = {
    0x26, 0x06, 0x47, 0x00, 0x47, 0x00, 0, 0, 0, 0, 0, 0, 0, 0, 0x11, 0x11};

} // namespace

std::optional<std::string> LinuxConfigurationStore::primaryInterface() {
  const std::scoped_lock lock(m_mutex);
  auto index = m_socket.routeInterface(AF_INET, publicAddress4);
  if (!index) {
    index = m_socket.routeInterface(AF_INET6, publicAddress6);
  }
  if (index) {
    m_lastIndex = index;
  }
  if (!m_lastIndex) {
    return std::nullopt;
  }
  auto name = m_socket.interfaceName(*m_lastIndex);
  if (!name) {
    m_lastIndex.reset();
  }
  return name;
}

} // namespace tidewell
