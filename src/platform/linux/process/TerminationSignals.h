#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <functional>
#include <memory>

namespace tidewell {

class EventLoop;
class FdWatch;

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the loop, and makes the process ignore SIGPIPE.
class TerminationSignals {
public:
  TerminationSignals(EventLoop& loop, std::function<void()> onTermination);
  TerminationSignals(TerminationSignals&&) = delete;
  ~TerminationSignals();

private:
  FileDescriptor m_signals;
  std::unique_ptr<FdWatch> m_watch;
};

} // namespace tidewell
