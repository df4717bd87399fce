#pragma once

#include "base/Scheduler.h"

#include <optional>
#include <string_view>

namespace tidewell {

/// The option by which a login entry asks to be kept running: nobody else restarts what it starts.
inline constexpr std::string_view keepRunningOption = "--keep-running";

/// How long to wait before a program that crashed is started again.
class RestartDelay {
public:
  RestartDelay(Seconds shortest, Seconds longest) : m_shortest(shortest), m_longest(longest) {}

  /// Twice as long each time, unless the program `lived` for a while, in seconds.
  Seconds next(Seconds lived);

private:
  Seconds m_shortest;
  Seconds m_longest;
  Seconds m_delay = 0;
};

/// Goes on in a child process and starts another whenever one crashes or fails. It costs next to no
/// memory when called before anything else, because the processes share their pages.
///
/// Returns nothing in each child; in the calling process, once a child has ended well or was asked
/// to end, the status to exit with. A child is asked to end (SIGTERM) when the caller dies. Call it
/// while there is one thread.
std::optional<int> keepRunning(RestartDelay delay = {2, 300});

} // namespace tidewell
