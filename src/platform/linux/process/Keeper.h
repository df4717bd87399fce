#pragma once

#include "base/Scheduler.h"

#include <optional>
#include <string_view>

namespace tidewell {

/// The option with which a login entry asks for restarts; nothing else restarts what it starts.
inline constexpr std::string_view keepRunningOption = "--keep-running";

/// The delay before a crashed program is restarted.
class RestartDelay {
public:
  RestartDelay(Seconds shortest, Seconds longest) : m_shortest(shortest), m_longest(longest) {}

  /// Doubles each time, unless the program `lived` long enough, in seconds.
  Seconds next(Seconds lived);

private:
  Seconds m_shortest;
  Seconds m_longest;
  Seconds m_delay = 0;
};

/// Continues in a child process and starts another whenever one crashes or fails. Costs almost no
/// memory if called first, because the processes share their pages.
///
/// Returns nullopt in each child. In the calling process, returns the status to exit with once a
/// child has ended well or was asked to end. A child gets SIGTERM when the caller dies. Call it
/// while there is one thread.
std::optional<int> keepRunning(RestartDelay delay = {2, 300});

} // namespace tidewell
