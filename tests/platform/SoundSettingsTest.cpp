#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/process/SpawnedChild.h"
#include "support/LoopRunner.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace tidewell::test {
namespace {

constexpr int forbidden = 2;

/// A desktop's settings under the names of the settings portal and of Xfce's service. Runs the
/// helper beside them.
class SoundSettingsTest : public testing::Test {
protected:
  enum class Manner { answers, hangs, talksNonsense };

  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    ::setenv("DBUS_SESSION_BUS_ADDRESS", daemon.address().c_str(), 1);
    ::setenv("CANBERRA_DRIVER", "null", 1); // no test is heard
    ASSERT_TRUE(runUntil(loop, [&] { return bus.connection() != nullptr; }));
  }

  void TearDown() override {
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    ::unsetenv("CANBERRA_DRIVER");
  }

  void serve(const char* ownName, const char* ownPath) {
    m_object = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_add_object(bus.connection(), slot, ownPath, &called, this);
    });
    bool isThere = false;
    const auto owned = [](sd_bus_message*, void* flag, sd_bus_error*) {
      *static_cast<bool*>(flag) = true;
      return 0;
    };
    const auto request = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_request_name_async(bus.connection(), slot, ownName, 0, owned, &isThere);
    });
    ASSERT_TRUE(runUntil(loop, [&] { return isThere; }));
  }
  void servePortal() { serve("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"); }
  void serveXfce() { serve("org.xfce.Xfconf", "/org/xfce/Xfconf"); }

  /// Whether the helper finds that it must be silent.
  bool isForbidden() {
    const auto child = SpawnedChild::start(loop, TIDEWELL_NOTIFICATION_SOUND, {}, 10.0);
    if (child == nullptr) {
      ADD_FAILURE() << "the helper cannot be started";
      return false;
    }
    Async<> waiting = wait(*child);
    waiting.start([] {});
    EXPECT_TRUE(waiting.isDone() || runUntil(loop, [&] { return waiting.isDone(); }));
    return child->status() == forbidden;
  }

  PrivateBus daemon;
  EpollLoop loop;
  SessionBus bus{loop, daemon.address()};
  Manner manner = Manner::answers;
  std::map<std::string, bool> settings; // "member group key"
  int calls = 0;

private:
  static Async<> wait(SpawnedChild& child) { co_await child.exit(); }

  static int called(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
    static_cast<SoundSettingsTest*>(self)->answer(*call);
    return 1;
  }

  void answer(sd_bus_message& call) {
    ++calls;
    const char* group = "";
    const char* key = "";
    sd_bus_message_read(&call, "ss", &group, &key);
    const std::string member = sd_bus_message_get_member(&call);
    const auto found = settings.find(member + " " + group + " " + key);
    if (manner == Manner::hangs) {
      return;
    }
    if (manner == Manner::talksNonsense) {
      sd_bus_reply_method_return(&call, "v", "v", "as", 1, "off");
    } else if (found == settings.end()) {
      sd_bus_reply_method_errorf(&call, "org.example.NotFound", "%s", key);
    } else if (member == "Read") { // the portal packs the value twice
      sd_bus_reply_method_return(&call, "v", "v", "b", found->second ? 1 : 0);
    } else {
      sd_bus_reply_method_return(&call, "v", "b", found->second ? 1 : 0);
    }
  }

  BusSlot m_object;
};

TEST_F(SoundSettingsTest, ForbidNothingWhereNobodyKeepsThem) {
  EXPECT_FALSE(isForbidden());
  servePortal();
  EXPECT_FALSE(isForbidden());
  EXPECT_GT(calls, 0);
}

TEST_F(SoundSettingsTest, ForbidSoundsWhereThePortalSaysThatEventSoundsAreOff) {
  servePortal();
  settings["Read org.gnome.desktop.sound event-sounds"] = false;
  EXPECT_TRUE(isForbidden());
  settings["Read org.gnome.desktop.sound event-sounds"] = true;
  EXPECT_FALSE(isForbidden());
}

TEST_F(SoundSettingsTest, ForbidSoundsWhereXfceSaysSo) {
  serveXfce();
  const std::string sounds = "GetProperty xsettings /Net/EnableEventSounds";
  const std::string quiet = "GetProperty xfce4-notifyd /do-not-disturb";
  settings = {{sounds, true}, {quiet, false}};
  EXPECT_FALSE(isForbidden());
  settings = {{sounds, false}, {quiet, false}};
  EXPECT_TRUE(isForbidden());
  settings = {{sounds, true}, {quiet, true}};
  EXPECT_TRUE(isForbidden());
}

TEST_F(SoundSettingsTest, ForbidNothingWithoutAnAnswerThatIsABoolean) {
  servePortal();
  settings["Read org.gnome.desktop.sound event-sounds"] = false;
  for (const Manner bad : {Manner::hangs, Manner::talksNonsense}) {
    manner = bad;
    EXPECT_FALSE(isForbidden());
  }
}

TEST_F(SoundSettingsTest, ForbidNothingWithoutABus) {
  daemon.end();
  EXPECT_FALSE(isForbidden());
}

} // namespace
} // namespace tidewell::test
