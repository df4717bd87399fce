#pragma once

#include "app/ResidentShell.h"
#include "platform/linux/loop/EpollLoop.h"

#include "connectivity/MonitorState.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"
#include "support/FakeLoginItem.h"
#include "support/FakePanel.h"
#include "support/FakePreferencesStore.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include <pthread.h>

namespace tidewell::test {

inline constexpr const char* item = "/StatusNotifierItem";
inline constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
inline constexpr const char* menu = "/MenuBar";
inline constexpr const char* menuInterface = "com.canonical.dbusmenu";
inline constexpr const char* face = "/com/halden/Tidewell";
inline constexpr const char* faceInterface = "com.halden.Tidewell";

/// The item, its menu and the bus interface over states that a test writes, with a panel that
/// looks.
class ResidentShellTest : public testing::Test {
protected:
  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    hostProcess("xfce4-panel");
  }

  /// Names the process of the panel, which is that of the tests.
  static void hostProcess(const char* name) { ::pthread_setname_np(::pthread_self(), name); }

  void startPanel() {
    panel = std::make_unique<FakePanel>(loop, daemon.address());
    ASSERT_TRUE(runUntil(loop, [this] { return panel->isThere(); }));
  }
  void startResident() {
    shell = std::make_unique<ResidentShell>(
        loop, bus, ResidentSources{sampler, monitor, tracker, speedTest, settings, preferences},
        ResidentActions{[this] { ++quits; }, [this] { ++foundAnother; }, [this] { ++speedTests; },
                        [this](const WindowRequest& request) { requests.push_back(request); }});
  }
  void startBoth() {
    startPanel();
    startResident();
    waitForItem();
  }
  void waitForItem() {
    ASSERT_TRUE(runUntil(loop, [this] { return !panel->items.empty(); }));
  }
  /// Publishes a sample as the sampler does.
  void publish(std::int64_t download, std::int64_t upload = 0) {
    sampler.currentDownloadBytesPerSec.set(download);
    sampler.currentUploadBytesPerSec.set(upload);
    sampler.latencyMs.set(sampler.latencyMs.get());
    sampler.jitterMs.set(0.0);
    sampler.packetLossPercent.set(0.0);
    sampler.snapshots.mutate([&](SnapshotList& list) {
      list.push_back(std::make_shared<const NetworkSnapshot>(1.0, download, upload, 0.0, 0.0, 0.0));
    });
  }
  /// Calls a method with arguments of these types.
  template <class... Arguments>
  BusMessage call(const char* path, const char* interface, const char* method, const char* types,
                  Arguments... arguments) {
    return panel->call(path, interface, method, [&](sd_bus_message& call) {
      sd_bus_message_append(&call, types, arguments...);
    });
  }
  /// The menu's row of this label; 0 without one.
  int rowOf(const std::string& label) {
    for (int row = 1; row < 20; ++row) {
      const auto reply = call(menu, menuInterface, "GetProperty", "is", row, "label");
      const char* text = nullptr;
      if (reply && sd_bus_message_read(reply.get(), "v", "s", &text) > 0 && label == text) {
        return row;
      }
    }
    return 0;
  }
  void choose(const std::string& label, const char* event = "clicked") {
    const int row = rowOf(label);
    ASSERT_GT(row, 0) << label;
    ASSERT_TRUE(call(menu, menuInterface, "Event", "isvu", row, event, "i", 0, 0));
  }
  /// Until everything that was sent has arrived.
  void settle() {
    for (int round = 0; round < 2; ++round) {
      ASSERT_TRUE(panel->call(face, "org.freedesktop.DBus.Peer", "Ping"));
    }
  }

  PrivateBus daemon;
  EpollLoop loop;
  SessionBus bus{loop, daemon.address()};
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  FakePreferencesStore preferences{loop};
  FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  int quits = 0;
  int foundAnother = 0;
  int speedTests = 0;
  std::vector<WindowRequest> requests;
  std::unique_ptr<ResidentShell> shell;
  std::unique_ptr<FakePanel> panel;
};

} // namespace tidewell::test
