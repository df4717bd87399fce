#include "app/ExtensionHint.h"

#include "base/Translation.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/files/FileReplacement.h"
#include "settings/AppSettings.h"

#include <utility>

#include <unistd.h>

namespace tidewell {
namespace {

constexpr const char* extension = "tidewell@halden.com";

bool exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

} // namespace

ExtensionHint::Places ExtensionHint::placesFor(const std::string& program,
                                               const std::string& state) {
  return {directoryOf(directoryOf(program)) + "/share/gnome-shell/extensions/" + extension +
              "/metadata.json",
          state + "/tidewell/toldOfExtension"};
}

ExtensionHint::ExtensionHint(WorkQueue& main, SessionBus& bus, const AppSettings& settings,
                             NotificationCenter& center, Places places,
                             std::function<bool()> isShown)
    : m_bus(bus), m_settings(settings), m_center(center), m_places(std::move(places)),
      m_isShown(std::move(isShown)) {
  if (exists(m_places.extension) && !exists(m_places.told)) {
    m_due = main.repeat(patience, 0.0, [this] { lookForShell(); });
  }
}

bool ExtensionHint::isDue() const { return m_settings.showNotifications() && !m_isShown(); }

void ExtensionHint::lookForShell() {
  m_due.reset();
  if (m_bus.connection() == nullptr || !isDue()) {
    return;
  }
  const BusService bus{"org.freedesktop.DBus", "/org/freedesktop/DBus"};
  m_question = callMethod(
      *m_bus.connection(), bus, "NameHasOwner",
      [this](sd_bus_message* reply) {
        int hasOwner = 0;
        if (reply != nullptr && sd_bus_message_read(reply, "b", &hasOwner) >= 0 && hasOwner != 0) {
          tell();
        }
      },
      "s", "org.gnome.Shell");
}

void ExtensionHint::tell() {
  // Without the file the user would be told at every start.
  if (!isDue() || makeDirectories(directoryOf(m_places.told)) ||
      replaceFile(m_places.told, "", 0600)) {
    return;
  }
  m_center.add(
      {"extension", translated("Tidewell in the top bar"),
       filled(translated("For the figures in GNOME's top bar run: gnome-extensions enable %1"),
              {extension}),
       NotificationPriority::low});
}

} // namespace tidewell
