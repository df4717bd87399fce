#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

/// The addresses of the name servers in a text as resolv.conf(5) describes it, in order. Lines that
/// name none, or something else than an address, are left out. Any text may be given. Pure.
[[nodiscard]] std::vector<std::string> parseResolverFile(std::string_view text);

} // namespace tidewell
