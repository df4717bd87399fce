#include "ui/placement/XConnection.h"

#include <QGuiApplication>

namespace tidewell {

xcb_connection_t* xConnection() {
  // Plugins for other displays may have the interface, too, without a connection.
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  const bool isX = QGuiApplication::platformName() == QLatin1String("xcb");
  return isX && x11 != nullptr ? x11->connection() : nullptr;
}

} // namespace tidewell
