#include "connectivity/ConnectionInfo.h"

#include "base/Translation.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tidewell {
namespace {

constexpr std::array<std::string_view, 4> typeNames = {
    translatable("Wi-Fi"), translatable("Ethernet"), translatable("Cellular"),
    translatable("Other")};

} // namespace

const std::string& addressToCopy(const ConnectionInfo& info) {
  return info.publicIP == "--" ? info.ipAddress : info.publicIP;
}

std::string_view rawValue(ConnectionInfo::InterfaceType type) {
  return typeNames.at(static_cast<std::size_t>(type));
}

std::optional<ConnectionInfo::InterfaceType> interfaceType(std::string_view rawValue) {
  const auto* const found = std::ranges::find(typeNames, rawValue);
  if (found == typeNames.end()) {
    return std::nullopt;
  }
  return static_cast<ConnectionInfo::InterfaceType>(found - typeNames.begin());
}

} // namespace tidewell
