#include "app/ResidentShellCase.h"

#include "platform/linux/bus/BusObject.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tidewell::test {
namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* appearance = "org.freedesktop.appearance";
constexpr std::uint32_t dark = 1;
constexpr std::uint32_t light = 2;

/// The settings of a desktop's portal.
class Portal {
public:
  Portal(EpollLoop& loop, const std::string& address, std::uint32_t scheme)
      : m_scheme(scheme), m_bus(loop, address) {
    m_object.method("Read", "ss", "v", [this](sd_bus_message& call, sd_bus_message& reply) {
      const char* group = "";
      const char* key = "";
      sd_bus_message_read(&call, "ss", &group, &key);
      const bool isKnown = std::string(group) == appearance && std::string(key) == "color-scheme";
      return isKnown ? sd_bus_message_append(&reply, "v", "v", "u", m_scheme) : -ENOENT;
    });
    m_object.signal("SettingChanged", "ssv");
    runUntil(loop, [this] { return m_bus.connection() != nullptr; });
    m_object.appear(*m_bus.connection());
    sd_bus_request_name(m_bus.connection(), portalName, 0);
  }
  ~Portal() { m_object.disappear(); }
  Portal(Portal&&) = delete;

  template <class Value>
  void say(const char* group, const char* key, const char* type, Value value) {
    m_object.emit("SettingChanged", [&](sd_bus_message& signal) {
      return sd_bus_message_append(&signal, "ssv", group, key, type, value);
    });
  }
  void say(std::uint32_t scheme) { say(appearance, "color-scheme", "u", scheme); }

private:
  std::uint32_t m_scheme;
  SessionBus m_bus;
  BusObject m_object{"/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"};
};

class ColourSchemeTest : public ResidentShellTest {
protected:
  std::unique_ptr<Portal> makePortal(std::uint32_t scheme) {
    return std::make_unique<Portal>(loop, daemon.address(), scheme);
  }
  /// The brightness of the first picture's ground, from 0 to 255; -1 without a picture.
  int ground() {
    const auto reply = panel->get(item, itemInterface, "IconPixmap", "a(iiay)");
    int width = 0;
    int height = 0;
    const void* bytes = nullptr;
    std::size_t size = 0;
    if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "(iiay)") <= 0 ||
        sd_bus_message_enter_container(reply.get(), 'r', "iiay") <= 0 ||
        sd_bus_message_read(reply.get(), "ii", &width, &height) <= 0 ||
        sd_bus_message_read_array(reply.get(), 'y', &bytes, &size) <= 0) {
      return -1;
    }
    // The middle of the top row, its green.
    return static_cast<const std::uint8_t*>(bytes)[static_cast<std::size_t>(width / 2) * 4 + 2];
  }
  bool isLight() { return ground() > 200; }
  /// Within some exchanges of messages.
  bool becomes(bool wanted) {
    for (int round = 0; round < 50 && isLight() != wanted; ++round) {
      settle();
    }
    return isLight() == wanted;
  }
};

TEST_F(ColourSchemeTest, IsDarkWithoutAPortal) {
  startBoth();
  settle();
  EXPECT_FALSE(isLight());
}

TEST_F(ColourSchemeTest, IsThatOfThePortal) {
  const auto portal = makePortal(light);
  startBoth();
  EXPECT_TRUE(becomes(true));
}

TEST_F(ColourSchemeTest, IsThatOfAPortalThatStartsLater) {
  startBoth();
  settle();
  panel->signals.clear();
  const auto portal = makePortal(light);
  EXPECT_TRUE(becomes(true));
}

TEST_F(ColourSchemeTest, FollowsTheSetting) {
  const auto portal = makePortal(dark);
  startBoth();
  settle();
  EXPECT_FALSE(isLight());
  for (const bool wanted : {true, false}) {
    panel->signals.clear();
    portal->say(wanted ? light : dark);
    EXPECT_TRUE(becomes(wanted));
    EXPECT_EQ(panel->signals["NewIcon"], 1);
  }
}

TEST_F(ColourSchemeTest, IgnoresOtherSettingsAndOtherTypes) {
  const auto portal = makePortal(light);
  startBoth();
  ASSERT_TRUE(becomes(true));
  settle();
  panel->signals.clear();
  portal->say("org.example", "color-scheme", "u", dark);
  portal->say(appearance, "contrast", "u", dark);
  settle();
  EXPECT_EQ(panel->signals["NewIcon"], 0);
  EXPECT_TRUE(isLight());
  portal->say(appearance, "color-scheme", "s", "light");
  EXPECT_TRUE(becomes(false));
}

TEST_F(ColourSchemeTest, DoesNotConcernLabels) {
  hostProcess("mate-panel");
  const auto portal = makePortal(dark);
  startBoth();
  settle();
  panel->signals.clear();
  portal->say(light);
  settle();
  EXPECT_EQ(panel->signals["NewIcon"], 0);
}

} // namespace
} // namespace tidewell::test
