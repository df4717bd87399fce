#pragma once

#include <cstdint>
#include <string_view>

class QWindow;

struct wl_display;
struct wl_interface;
struct wl_surface;
struct xcb_connection_t;

namespace tidewell {

/// The application's connection to the X server, borrowed. Null on other displays.
[[nodiscard]] xcb_connection_t* xConnection();

/// The number that the X server has for a name. XCB_ATOM_NONE if the connection is broken.
[[nodiscard]] std::uint32_t xAtom(xcb_connection_t* connection, std::string_view name);

/// The application's connection to the Wayland compositor, borrowed. Null on other displays.
[[nodiscard]] wl_display* waylandDisplay();

/// The surface of a window that the toolkit has created under Wayland, borrowed.
[[nodiscard]] wl_surface* waylandSurface(QWindow* window);

/// Binds the compositor's first global object of this type, in version 1. The caller owns it. Null
/// if the compositor has none, and on other displays.
[[nodiscard]] void* bindWaylandGlobal(const wl_interface& type);

/// Whether windows may be translucent: always under Wayland, and under X11 while a compositor runs.
[[nodiscard]] bool hasCompositing();

/// Sets the environment so that the toolkit uses a display on which the panel can be placed, and
/// loads only what the windows need. Call it before the application object exists.
///
/// Uses Wayland if the compositor has a layer shell. Otherwise the panel could not be placed there,
/// so X11 is preferred. The user's own settings come first; the other displays are tried after
/// them. A compositor that does not answer within three seconds counts as absent. Returns false if
/// there is no display; the toolkit would abort.
[[nodiscard]] bool chooseDisplay();

} // namespace tidewell
