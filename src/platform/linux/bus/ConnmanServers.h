#pragma once

#include "base/Async.h"
#include "base/Scheduler.h"

#include <string>
#include <vector>

struct sd_bus_message;

namespace tidewell {

class EventLoop;
class SessionBus;

/// Reads the DNS servers of the default service from a reply to connman's GetServices, whose first
/// service is the default one. Skips entries that are not addresses; returns nothing for a message
/// of any other form. Pure.
[[nodiscard]] std::vector<std::string> readConnmanServers(sd_bus_message* reply);

/// Queries connman over the system bus; never starts it. Empty if no answer comes within `limit`
/// seconds.
[[nodiscard]] Async<std::vector<std::string>> askConnman(EventLoop& loop, SessionBus& systemBus,
                                                         Seconds limit);

} // namespace tidewell
