#pragma once

namespace tidewell {

/// Returns the program text touched during startup, and free heap, to the kernel. Pages still
/// needed come back from the page cache at the next touch; those for startup alone, such as dynamic
/// linking and reading the preferences, never do.
void releaseStartupPages();

} // namespace tidewell
