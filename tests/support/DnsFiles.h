#pragma once

#include "platform/linux/network/DnsServers.h"
#include "support/TemporaryDirectory.h"

namespace tidewell::test {

/// The places of DNS servers of a machine of its own.
struct DnsFiles {
  TemporaryDirectory root;
  DnsPlaces places{(root / "resolve").string(), (root / "resolv.conf").string(),
                   (root / "NetworkManager").string(), (root / "dnsmasq.conf").string(),
                   (root / "connman").string()};
};

} // namespace tidewell::test
