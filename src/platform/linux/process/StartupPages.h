#pragma once

namespace tidewell {

/// Hands the pages of program text that starting up has touched back to the kernel, and free heap
/// with them. What is still needed comes back from the page cache at the next touch; the rest, such
/// as the reading of the preferences and the dynamic linking, never does. Any thread.
void releaseStartupPages();

} // namespace tidewell
