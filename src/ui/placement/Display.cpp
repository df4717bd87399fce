#include "ui/placement/Display.h"

#include <QByteArray>
#include <QGuiApplication>
#include <qpa/qplatformnativeinterface.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <poll.h>
#include <wayland-client.h>
#include <xcb/xcb.h>

namespace tidewell {
namespace {

template <class Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

bool isSelectionOwned(xcb_connection_t* connection, std::string_view selection) {
  const xcb_atom_t atom = xAtom(connection, selection);
  if (atom == XCB_ATOM_NONE) {
    return false;
  }
  const auto ownerCookie = xcb_get_selection_owner(connection, atom);
  const Owned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection, ownerCookie, nullptr), std::free);
  return owner && owner->owner != XCB_WINDOW_NONE;
}

void setDefault(const char* variable, const char* value) {
  if (!qEnvironmentVariableIsSet(variable)) {
    qputenv(variable, value);
  }
}

void noteGlobal(void* found, wl_registry* /*registry*/, std::uint32_t /*name*/,
                const char* interface, std::uint32_t /*version*/) {
  if (std::string_view(interface) == "zwlr_layer_shell_v1") {
    *static_cast<bool*>(found) = true;
  }
}

void forgetGlobal(void* /*found*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

struct WantedGlobal {
  const wl_interface& type;
  void* bound = nullptr;
};

void bindGlobal(void* wanted, wl_registry* registry, std::uint32_t name, const char* interface,
                std::uint32_t /*version*/) {
  auto& [type, bound] = *static_cast<WantedGlobal*>(wanted);
  if (bound == nullptr && std::string_view(interface) == type.name) {
    bound = wl_registry_bind(registry, name, &type, 1);
  }
}

enum class Wayland { absent, plain, withLayerShell };

// Compositors answer within milliseconds. One that starts on a busy machine may take longer.
constexpr std::chrono::seconds compositorPatience(3);

void noteAnswer(void* isAnswered, wl_callback* /*callback*/, std::uint32_t /*data*/) {
  *static_cast<bool*>(isAnswered) = true;
}

/// Waits for events and handles them. Returns false if there were none in time, or on an error.
bool handleEvents(wl_display* display, std::chrono::steady_clock::time_point deadline) {
  if (wl_display_prepare_read(display) != 0) {
    return wl_display_dispatch_pending(display) >= 0;
  }
  using std::chrono::milliseconds;
  const auto left =
      std::chrono::duration_cast<milliseconds>(deadline - std::chrono::steady_clock::now());
  pollfd waiting = {wl_display_get_fd(display), POLLIN, 0};
  if (left <= milliseconds(0) || wl_display_flush(display) < 0 ||
      ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0) {
    wl_display_cancel_read(display);
    return false;
  }
  return wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
}

/// Returns false if the compositor does not answer in time. The library's own round trip would wait
/// forever.
bool makeRoundTrip(wl_display* display) {
  const auto deadline = std::chrono::steady_clock::now() + compositorPatience;
  const std::unique_ptr<wl_callback, decltype(&wl_callback_destroy)> callback(
      wl_display_sync(display), wl_callback_destroy);
  constexpr wl_callback_listener listener = {noteAnswer};
  bool isAnswered = false;
  wl_callback_add_listener(callback.get(), &listener, &isAnswered);
  while (!isAnswered) {
    if (!handleEvents(display, deadline)) {
      return false;
    }
  }
  return true;
}

Wayland lookForWayland() {
  const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
      wl_display_connect(nullptr), wl_display_disconnect);
  if (!display) {
    return Wayland::absent;
  }
  const std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)> registry(
      wl_display_get_registry(display.get()), wl_registry_destroy);
  constexpr wl_registry_listener listener = {noteGlobal, forgetGlobal};
  bool hasLayerShell = false;
  wl_registry_add_listener(registry.get(), &listener, &hasLayerShell);
  if (!makeRoundTrip(display.get())) {
    return Wayland::absent;
  }
  return hasLayerShell ? Wayland::withLayerShell : Wayland::plain;
}

/// Whether an X server takes this program. One that is set may refuse it, for example without a
/// key.
bool isXThere() {
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const bool isThere = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return isThere;
}

/// The displays to try, in order, as the toolkit takes them; null if there is none. It passes over
/// one whose plug-in is not installed.
const char* platformsFor(Wayland wayland, bool hasX) {
  switch (wayland) {
  case Wayland::withLayerShell:
    return hasX ? "wayland;xcb" : "wayland";
  case Wayland::plain:
    return hasX ? "xcb;wayland" : "wayland";
  case Wayland::absent:
    break;
  }
  return hasX ? "xcb" : nullptr;
}

/// Sets the displays that the toolkit tries. One that the user has chosen comes first. Returns
/// false if there is none.
bool choosePlatforms() {
  const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
  const char* const found = platformsFor(lookForWayland(), isXThere());
  if (found == nullptr) {
    // Others, such as "offscreen", need no display.
    return !chosen.isEmpty() && !chosen.startsWith("wayland") && !chosen.startsWith("xcb");
  }
  qputenv("QT_QPA_PLATFORM", chosen.isEmpty() ? QByteArray(found) : chosen + ';' + found);
  return true;
}

} // namespace

xcb_connection_t* xConnection() {
  // Plugins for other displays may have this interface without a connection.
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  const bool isX = QGuiApplication::platformName() == QLatin1String("xcb");
  return isX && x11 != nullptr ? x11->connection() : nullptr;
}

std::uint32_t xAtom(xcb_connection_t* connection, std::string_view name) {
  const auto cookie =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr),
                                             std::free);
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

wl_display* waylandDisplay() {
  auto* const native = QGuiApplication::platformNativeInterface();
  return native != nullptr && QGuiApplication::platformName().startsWith(QLatin1String("wayland"))
             ? static_cast<wl_display*>(native->nativeResourceForIntegration("display"))
             : nullptr;
}

wl_surface* waylandSurface(QWindow* window) {
  return static_cast<wl_surface*>(
      QGuiApplication::platformNativeInterface()->nativeResourceForWindow("surface", window));
}

void* bindWaylandGlobal(const wl_interface& type) {
  wl_display* const display = waylandDisplay();
  if (display == nullptr) {
    return nullptr;
  }
  WantedGlobal wanted = {type};
  // With a queue of its own, events of other objects wait: their handlers may be the callers.
  const std::unique_ptr<wl_event_queue, decltype(&wl_event_queue_destroy)> queue(
      wl_display_create_queue(display), wl_event_queue_destroy);
  const std::unique_ptr<void, decltype(&wl_proxy_wrapper_destroy)> wrapper(
      wl_proxy_create_wrapper(display), wl_proxy_wrapper_destroy);
  wl_proxy_set_queue(static_cast<wl_proxy*>(wrapper.get()), queue.get());
  const std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)> registry(
      wl_display_get_registry(static_cast<wl_display*>(wrapper.get())), wl_registry_destroy);
  static constexpr wl_registry_listener listener = {bindGlobal, forgetGlobal};
  wl_registry_add_listener(registry.get(), &listener, &wanted);
  wl_display_roundtrip_queue(display, queue.get());
  if (wanted.bound != nullptr) {
    wl_proxy_set_queue(static_cast<wl_proxy*>(wanted.bound), nullptr);
  }
  return wanted.bound;
}

bool hasCompositing() {
  xcb_connection_t* const connection = xConnection();
  return connection == nullptr || isSelectionOwned(connection, "_NET_WM_CM_S0");
}

bool chooseDisplay() {
  if (!choosePlatforms()) {
    return false;
  }
  // Everything is painted in memory. By default the platform plugins would load a GL stack.
  setDefault("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none");
  setDefault("QT_XCB_GL_INTEGRATION", "none");
  // The windows look the same everywhere. A desktop's theme plugin would load another toolkit.
  setDefault("QT_QPA_PLATFORMTHEME", "generic");
  setDefault("QT_NO_GLIB", "1");
  // Draws title bars in the windows' dark colours, on compositors that leave them to programs.
  setDefault("QT_WAYLAND_DECORATION", "bradient");
  // Respects panels on multiple screens.
  setDefault("QT_RELY_ON_NET_WORKAREA_ATOM", "1");
  // Creates the panel's surface without a role, so that the layer shell can assign one.
  qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
  return true;
}

} // namespace tidewell
