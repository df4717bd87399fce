#pragma once

struct xcb_connection_t;

namespace tidewell {

/// The application's connection to the X server; null on any other display. Borrowed. Main thread.
[[nodiscard]] xcb_connection_t* xConnection();

/// Whether windows may be translucent: always under Wayland, under X11 while something composes
/// them.
[[nodiscard]] bool hasCompositing();

/// Sets the environment so that the toolkit takes the display on which the panel can be placed, and
/// loads nothing that the windows do not need. To be called before the application object exists.
///
/// A compositor with a layer shell is spoken to natively; without one, the panel could not be
/// placed, so the X server is taken if there is any. What the user has set stays. False where there
/// is no display at all, of which the toolkit would make an abort.
[[nodiscard]] bool chooseDisplay();

} // namespace tidewell
