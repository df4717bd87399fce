#include "ui/application/WindowHints.h"

#include "decoration-palette.h"
#include "ui/placement/Display.h"

#include <QFile>
#include <QStandardPaths>
#include <QWidget>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <xcb/xcb.h>

namespace tidewell {
namespace {

void setText(xcb_connection_t* connection, QWidget& window, std::string_view property,
             xcb_atom_t type, std::string_view text) {
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                      xAtom(connection, property), type, 8, static_cast<std::uint32_t>(text.size()),
                      text.data());
}

/// The path of KDE's dark colour scheme, which KWin takes. Empty if it is not installed.
std::string darkColourScheme() {
  const QString path = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                              QStringLiteral("color-schemes/BreezeDark.colors"));
  return QFile::encodeName(path).toStdString();
}

void setXHints(QWidget& window, const std::string& scheme) {
  xcb_connection_t* const connection = xConnection();
  setText(connection, window, "_GTK_THEME_VARIANT", xAtom(connection, "UTF8_STRING"), "dark");
  if (!scheme.empty()) {
    setText(connection, window, "_KDE_NET_WM_COLOR_SCHEME", XCB_ATOM_STRING, scheme);
  }
}

/// KWin's palettes for title bars. Looked up once. Null with other compositors.
org_kde_kwin_server_decoration_palette_manager* paletteManager() {
  static auto* const found = static_cast<org_kde_kwin_server_decoration_palette_manager*>(
      bindWaylandGlobal(org_kde_kwin_server_decoration_palette_manager_interface));
  return found;
}

void setDecorationPalette(QWidget& window, const std::string& scheme) {
  if (paletteManager() == nullptr) {
    return;
  }
  // Creates the surface.
  window.winId();
  auto* const palette = org_kde_kwin_server_decoration_palette_manager_create(
      paletteManager(), waylandSurface(window.windowHandle()));
  org_kde_kwin_server_decoration_palette_set_palette(palette, scheme.c_str());
  QObject::connect(&window, &QObject::destroyed, &window,
                   [palette] { org_kde_kwin_server_decoration_palette_release(palette); });
}

} // namespace

void requestDarkTitleBar(QWidget& window) {
  const std::string scheme = darkColourScheme();
  if (xConnection() != nullptr) {
    setXHints(window, scheme);
  } else if (!scheme.empty()) {
    setDecorationPalette(window, scheme);
  }
}

void endStartupNotification(const std::string& token) {
  xcb_connection_t* const connection = xConnection();
  if (connection == nullptr || token.empty()) {
    return;
  }
  const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
  const xcb_window_t sender = xcb_generate_id(connection);
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, sender, screen.root, -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  // Tokens have no spaces and need no quotes. The final zero belongs to the message.
  const std::string text = "remove: ID=" + token + '\0';
  xcb_client_message_event_t message = {};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 8;
  message.window = sender;
  message.type = xAtom(connection, "_NET_STARTUP_INFO_BEGIN");
  for (std::size_t at = 0; at < text.size(); at += sizeof message.data.data8) {
    const std::string_view part = std::string_view(text).substr(at, sizeof message.data.data8);
    std::ranges::fill(message.data.data8, 0);
    std::ranges::copy(part, message.data.data8);
    xcb_send_event(connection, 0, screen.root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                   reinterpret_cast<const char*>(&message));
    message.type = xAtom(connection, "_NET_STARTUP_INFO");
  }
  xcb_destroy_window(connection, sender);
  xcb_flush(connection);
}

} // namespace tidewell
