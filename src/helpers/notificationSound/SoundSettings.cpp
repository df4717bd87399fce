#include "helpers/notificationSound/SoundSettings.h"

#include "platform/linux/bus/BusMessages.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace tidewell {
namespace {

// A running service answers within milliseconds. Later than this, a sound would follow its notice
// noticeably late.
constexpr std::uint64_t longestWaitUsec = 500'000;

/// A service that returns the value of a key in a group.
struct SettingsService {
  const char* name;
  const char* path;
  const char* interface;
  const char* method;
};

// The settings portal's documentation; on desktops of the GNOME family it reads their GSettings.
constexpr SettingsService portal{"org.freedesktop.portal.Desktop",
                                 "/org/freedesktop/portal/desktop",
                                 "org.freedesktop.portal.Settings", "Read"};
constexpr SettingsService xfconf{"org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf",
                                 "GetProperty"};

struct Setting {
  const SettingsService& service;
  const char* group;
  const char* key;
  bool forbidding; // the value that forbids sounds
};

constexpr std::array<Setting, 3> settings = {
    {{portal, "org.gnome.desktop.sound", "event-sounds", false},
     {xfconf, "xsettings", "/Net/EnableEventSounds", false},
     {xfconf, "xfce4-notifyd", "/do-not-disturb", true}}};

struct BusEnd {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

/// The boolean of a reply, in any number of variants.
std::optional<bool> booleanIn(sd_bus_message& reply) {
  char type = 0;
  const char* contents = nullptr;
  while (sd_bus_message_peek_type(&reply, &type, &contents) > 0 && type == 'v') {
    if (sd_bus_message_enter_container(&reply, type, contents) <= 0) {
      return std::nullopt;
    }
  }
  int value = 0;
  return sd_bus_message_read_basic(&reply, 'b', &value) > 0 ? std::optional(value != 0)
                                                            : std::nullopt;
}

std::optional<bool> read(sd_bus& bus, const Setting& setting) {
  const SettingsService& service = setting.service;
  const auto call = takeFrom<BusMessage>([&](sd_bus_message** made) {
    return sd_bus_message_new_method_call(&bus, made, service.name, service.path, service.interface,
                                          service.method);
  });
  if (!call || sd_bus_message_append(call.get(), "ss", setting.group, setting.key) < 0 ||
      sd_bus_message_set_auto_start(call.get(), 0) < 0) {
    return std::nullopt;
  }
  const auto reply = takeFrom<BusMessage>([&](sd_bus_message** received) {
    return sd_bus_call(&bus, call.get(), longestWaitUsec, nullptr, received);
  });
  return reply ? booleanIn(*reply) : std::nullopt;
}

} // namespace

bool isSoundForbidden() {
  const auto bus = takeFrom<std::unique_ptr<sd_bus, BusEnd>>(
      [](sd_bus** opened) { return sd_bus_open_user(opened); });
  return bus && std::ranges::any_of(settings, [&](const Setting& setting) {
           return read(*bus, setting) == setting.forbidding;
         });
}

} // namespace tidewell
