#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace tidewell {

/// The first IPv4 address, as dotted decimals, of the interface with this index in a reply to
/// RTM_GETADDR; none when the bytes hold none. Any bytes may be given. Pure.
[[nodiscard]] std::optional<std::string> parseFirstIPv4(std::span<const std::byte> reply,
                                                        unsigned interfaceIndex);

} // namespace tidewell
