#include "sampling/NetworkStatus.h"

#include "base/Translation.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tidewell {
namespace {

constexpr std::array<std::string_view, 4> statusNames = {
    translatable("excellent"), translatable("good"), translatable("degraded"),
    translatable("down")};

} // namespace

std::string_view rawValue(NetworkStatus status) {
  return statusNames.at(static_cast<std::size_t>(status));
}

std::optional<NetworkStatus> networkStatus(std::string_view rawValue) {
  const auto* const found = std::ranges::find(statusNames, rawValue);
  return found == statusNames.end()
             ? std::nullopt
             : std::optional(static_cast<NetworkStatus>(found - statusNames.begin()));
}

} // namespace tidewell
