#pragma once

#include "base/Async.h"
#include "base/Scheduler.h"

#include <optional>
#include <string>
#include <vector>

struct sd_bus_message;

namespace tidewell {

class EventLoop;

/// A DNS server that systemd-resolved uses.
struct ResolvedServer {
  int interfaceIndex = 0; // zero for one that belongs to no link
  std::string address;

  friend bool operator==(const ResolvedServer&, const ResolvedServer&) = default;
};

/// The servers in the reply to a question for the property DNS of systemd-resolved's manager.
/// Entries that are no address are left out; none at all in a message of any other form. Pure.
[[nodiscard]] std::vector<ResolvedServer> readResolvedServers(sd_bus_message* reply);

/// The addresses in order of choice: those of the link with this index, those of no link, the rest.
/// Pure.
[[nodiscard]] std::vector<std::string> inOrderOfChoice(const std::vector<ResolvedServer>& servers,
                                                       std::optional<int> primaryIndex);

/// Asks systemd-resolved over the system's bus, on a connection that is closed again; never starts
/// it. Empty when no answer has come after `limit` seconds.
[[nodiscard]] Async<std::vector<ResolvedServer>> askResolved(EventLoop& loop, Seconds limit);

} // namespace tidewell
