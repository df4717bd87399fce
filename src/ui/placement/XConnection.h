#pragma once

struct xcb_connection_t;

namespace tidewell {

/// The application's connection to the X server; null on any other display. Borrowed. Main thread.
[[nodiscard]] xcb_connection_t* xConnection();

} // namespace tidewell
