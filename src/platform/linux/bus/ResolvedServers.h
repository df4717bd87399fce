#pragma once

#include "base/Async.h"
#include "base/Scheduler.h"

#include <optional>
#include <string>
#include <vector>

struct sd_bus_message;

namespace tidewell {

class EventLoop;
class SessionBus;

/// A DNS server that systemd-resolved uses.
struct ResolvedServer {
  int interfaceIndex = 0; // zero if it belongs to no link
  std::string address;

  friend bool operator==(const ResolvedServer&, const ResolvedServer&) = default;
};

/// Parses a reply with the property DNS of systemd-resolved's manager. Skips entries that are not
/// addresses; returns nothing for a message of any other form. Pure.
[[nodiscard]] std::vector<ResolvedServer> readResolvedServers(sd_bus_message* reply);

/// The addresses in order of preference: those of the link with this index, those of no link, the
/// rest. Pure.
[[nodiscard]] std::vector<std::string> inOrderOfChoice(const std::vector<ResolvedServer>& servers,
                                                       std::optional<int> primaryIndex);

/// Queries systemd-resolved over the system bus; never starts it. Empty if no answer comes within
/// `limit` seconds.
[[nodiscard]] Async<std::vector<ResolvedServer>> askResolved(EventLoop& loop, SessionBus& systemBus,
                                                             Seconds limit);

} // namespace tidewell
