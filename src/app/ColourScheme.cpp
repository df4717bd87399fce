#include "app/ColourScheme.h"

#include "platform/linux/bus/SessionBus.h"

#include <cstdint>
#include <utility>

namespace tidewell {
namespace {

constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* settings = "org.freedesktop.portal.Settings";
constexpr const char* group = "org.freedesktop.appearance";
constexpr const char* key = "color-scheme";

// 0 is no preference, 1 dark.
constexpr std::uint32_t light = 2;

// The reply has the number in two variants, the signal in one.
bool readLight(sd_bus_message& message) {
  std::uint32_t scheme = 0;
  while (sd_bus_message_enter_container(&message, 'v', nullptr) > 0) {
  }
  return sd_bus_message_read(&message, "u", &scheme) > 0 && scheme == light;
}

} // namespace

ColourScheme::ColourScheme(SessionBus& bus, std::function<void()> changed)
    : m_changed(std::move(changed)), m_lost(bus.onLost([this] { disappear(); })),
      m_connected(bus.onConnected([this](sd_bus& connection) { appear(connection); })) {}

void ColourScheme::appear(sd_bus& bus) {
  m_owner = watchOwner(bus, portal, [this, &bus](sd_bus_message* signal) {
    const char* owner = "";
    sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner);
    if (*owner != '\0') {
      fetch(bus);
    }
  });
  const std::string match = std::string("type='signal',sender='") + portal + "',path='" +
                            portalPath + "',interface='" + settings +
                            "',member='SettingChanged',arg0='" + group + "',arg1='" + key + "'";
  m_setting = watchSignal(bus, match.c_str(), [this](sd_bus_message* signal) {
    if (sd_bus_message_skip(signal, "ss") >= 0) {
      set(readLight(*signal));
    }
  });
  const auto found = [this, &bus](sd_bus_message* reply) {
    if (reply != nullptr) {
      fetch(bus);
    }
  };
  m_call = callMethod(bus, busDaemon, "GetNameOwner", found, "s", portal);
}

void ColourScheme::disappear() {
  m_call.reset();
  m_setting.reset();
  m_owner.reset();
}

void ColourScheme::fetch(sd_bus& bus) {
  const auto answered = [this](sd_bus_message* reply) {
    set(reply != nullptr && readLight(*reply));
  };
  m_call = withHandler(answered, [&bus](auto** slot, auto callback, void* own) {
    return sd_bus_call_method_async(&bus, slot, portal, portalPath, settings, "Read", callback, own,
                                    "ss", group, key);
  });
}

void ColourScheme::set(bool isLight) {
  if (std::exchange(m_isLight, isLight) != isLight) {
    m_changed();
  }
}

} // namespace tidewell
