#pragma once

#include "base/Async.h"
#include "base/Scheduler.h"
#include "platform/linux/bus/BusMessages.h"

#include <vector>

namespace tidewell {

class EventLoop;
class SessionBus;

/// A method call with texts as arguments.
struct BusQuestion {
  const char* service;
  const char* path;
  const char* interface;
  const char* member;
  std::vector<const char*> arguments;
};

/// Calls a method of a service that runs; never starts one. Null if no reply comes within `limit`
/// seconds, which include the time until there is a connection. Borrows the loop and the bus.
[[nodiscard]] Async<BusMessage> ask(EventLoop& loop, SessionBus& bus, BusQuestion question,
                                    Seconds limit);

} // namespace tidewell
