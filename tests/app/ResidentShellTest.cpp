#include "app/ResidentShell.h"

#include "connectivity/MonitorState.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"
#include "support/FakeDefaultsStore.h"
#include "support/FakeLoginItem.h"
#include "support/FakePanel.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

#include <stdlib.h>

namespace tidewell::test {
namespace {

constexpr const char* item = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menu = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr const char* face = "/com/halden/Tidewell";
constexpr const char* faceInterface = "com.halden.Tidewell";

class ResidentShellTest : public testing::Test {
protected:
  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    desktop("XFCE");
  }

  static void desktop(const char* name) { ::setenv("XDG_CURRENT_DESKTOP", name, 1); }

  void startPanel() {
    panel = std::make_unique<FakePanel>(loop, daemon.address());
    ASSERT_TRUE(runUntil(loop, [this] { return panel->isThere(); }));
  }
  void startResident() {
    shell = std::make_unique<ResidentShell>(
        loop, bus, ResidentSources{sampler, monitor, tracker, speedTest, settings, defaults},
        ResidentShell::Actions{
            [this] { ++quits; }, [this] { ++foundAnother; }, [this] { ++speedTests; },
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
  /// The menu's row of this label; 0 without one.
  int rowOf(const std::string& label) {
    for (int row = 1; row < 20; ++row) {
      const auto reply = panel->call(menu, menuInterface, "GetProperty", [&](sd_bus_message& call) {
        sd_bus_message_append(&call, "is", row, "label");
      });
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
    ASSERT_TRUE(panel->call(menu, menuInterface, "Event", [&](sd_bus_message& call) {
      sd_bus_message_append(&call, "isvu", row, event, "i", 0, 0);
    }));
  }
  /// Until everything that was sent has arrived.
  void settle() {
    for (int round = 0; round < 2; ++round) {
      ASSERT_TRUE(panel->call(face, "org.freedesktop.DBus.Peer", "Ping"));
    }
  }

  PrivateBus daemon;
  EventLoop loop;
  SessionBus bus{loop, daemon.address()};
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  FakeDefaultsStore defaults{loop};
  FakeLoginItem loginItem;
  AppSettings settings{defaults, loginItem};
  int quits = 0;
  int foundAnother = 0;
  int speedTests = 0;
  std::vector<WindowRequest> requests;
  std::unique_ptr<ResidentShell> shell;
  std::unique_ptr<FakePanel> panel;
};

TEST_F(ResidentShellTest, RegistersItsItemByItsUniqueName) {
  startBoth();
  EXPECT_TRUE(panel->items[0].starts_with(":")) << panel->items[0];
}

TEST_F(ResidentShellTest, RegistersWithAPanelThatComesLate) {
  startResident();
  ASSERT_TRUE(runUntil(loop, [this] { return bus.connection() != nullptr; }));
  startPanel();
  waitForItem();
}

TEST_F(ResidentShellTest, RegistersAgainWhenThePanelRestarts) {
  startBoth();
  panel.reset();
  startPanel();
  waitForItem();
  EXPECT_EQ(panel->text(item, itemInterface, "Id"), "tidewell");
}

TEST_F(ResidentShellTest, AsksAgainWhenItIsRefused) {
  startPanel();
  panel->refusals = 1;
  startResident();
  waitForItem();
  EXPECT_EQ(panel->attempts, 2);
}

TEST_F(ResidentShellTest, ComesBackOnANewBusAfterTheOldOneDied) {
  startBoth();
  daemon.end();
  ASSERT_TRUE(runUntil(loop, [this] { return bus.connection() == nullptr; }));
  publish(5'000);
  panel.reset();
  daemon.start();
  startPanel();
  waitForItem();
  EXPECT_EQ(panel->text(face, faceInterface, "MenubarText"), "↓5K ↑0K");
}

TEST_F(ResidentShellTest, LivesWithoutABusUntilThereIsOne) {
  daemon.end();
  SessionBus early(loop, daemon.address());
  EXPECT_EQ(early.connection(), nullptr);
  daemon.start();
  EXPECT_TRUE(runUntil(loop, [&] { return early.connection() != nullptr; }));
  SessionBus never(loop, "");
  EXPECT_EQ(never.connection(), nullptr);
}

TEST_F(ResidentShellTest, GivesHostsThePropertiesOfTheTypesTheyExpect) {
  startBoth();
  const std::pair<const char*, const char*> properties[] = {{"Category", "s"},
                                                            {"Id", "s"},
                                                            {"Title", "s"},
                                                            {"Status", "s"},
                                                            {"WindowId", "i"},
                                                            {"IconThemePath", "s"},
                                                            {"Menu", "o"},
                                                            {"ItemIsMenu", "b"},
                                                            {"IconName", "s"},
                                                            {"IconPixmap", "a(iiay)"},
                                                            {"OverlayIconName", "s"},
                                                            {"OverlayIconPixmap", "a(iiay)"},
                                                            {"AttentionIconName", "s"},
                                                            {"AttentionIconPixmap", "a(iiay)"},
                                                            {"AttentionMovieName", "s"},
                                                            {"ToolTip", "(sa(iiay)ss)"},
                                                            {"XAyatanaLabel", "s"},
                                                            {"XAyatanaLabelGuide", "s"},
                                                            {"XAyatanaOrderingIndex", "u"}};
  for (const auto& [name, type] : properties) {
    EXPECT_TRUE(panel->get(item, itemInterface, name, type)) << name << " " << panel->error;
  }
  EXPECT_FALSE(panel->get(item, itemInterface, "Nonsense", "s"));
}

TEST_F(ResidentShellTest, SaysInTheLabelWhatTheMenuBarSays) {
  desktop("GNOME");
  startBoth();
  publish(12'345, 3'210);
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabel"), "↓12K ↑3K");
  const std::string guide = panel->text(item, itemInterface, "XAyatanaLabelGuide");
  publish(9'999'999'999, 0);
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabelGuide"), guide);
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabel"), "↓10000M ↑0K");
}

TEST_F(ResidentShellTest, TellsHostsOfLabelsAloneAboutLabels) {
  desktop("GNOME");
  startBoth();
  settle();
  panel->signals.clear();
  publish(12'345);
  settle();
  EXPECT_EQ(panel->signals["XAyatanaNewLabel"], 1);
  EXPECT_EQ(panel->signals["NewIcon"], 0);
}

TEST_F(ResidentShellTest, TellsHostsOfPicturesAloneAboutPictures) {
  startBoth();
  settle();
  panel->signals.clear();
  publish(12'345);
  settle();
  EXPECT_EQ(panel->signals["NewIcon"], 1);
  EXPECT_EQ(panel->signals["XAyatanaNewLabel"], 0);
}

TEST_F(ResidentShellTest, TellsEachPublicationOnceAndAnEqualOneNotAtAll) {
  startBoth();
  settle();
  panel->signals.clear();
  publish(12'345);
  settle();
  EXPECT_EQ(panel->signals["PropertiesChanged"], 1);
  EXPECT_EQ(panel->signals["SampleAdded"], 1);
  panel->signals.clear();
  publish(12'345);
  settle();
  EXPECT_EQ(panel->signals["SampleAdded"], 1);
  EXPECT_EQ(panel->signals.size(), 1U) << "nothing changed for a reader";
}

TEST_F(ResidentShellTest, PublishesASettingThatShowsAtOnce) {
  startBoth();
  settings.setShowUploadInMenubar(false);
  settle();
  EXPECT_EQ(panel->text(face, faceInterface, "MenubarText"), "↓0K");
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabelGuide"), "↓10000M");
}

TEST_F(ResidentShellTest, ChangesTheMenuOnlyForWhoHasLookedAtIt) {
  startBoth();
  settle();
  publish(12'345);
  settle();
  EXPECT_EQ(panel->signals["ItemsPropertiesUpdated"], 0);
  ASSERT_TRUE(panel->call(menu, menuInterface, "GetLayout", [](sd_bus_message& call) {
    sd_bus_message_append(&call, "iias", 0, -1, 0);
  }));
  publish(99'999);
  settle();
  EXPECT_EQ(panel->signals["ItemsPropertiesUpdated"], 1);
  EXPECT_EQ(panel->signals["LayoutUpdated"], 0);
}

TEST_F(ResidentShellTest, AnswersNonsenseFromTheMenusHostWithErrors) {
  startBoth();
  for (const int id : {-1, 99, 2'000'000'000}) {
    EXPECT_FALSE(panel->call(menu, menuInterface, "GetLayout", [&](sd_bus_message& call) {
      sd_bus_message_append(&call, "iias", id, -1, 0);
    })) << id;
    EXPECT_FALSE(panel->call(menu, menuInterface, "GetProperty", [&](sd_bus_message& call) {
      sd_bus_message_append(&call, "is", id, "label");
    })) << id;
    EXPECT_TRUE(panel->call(menu, menuInterface, "Event", [&](sd_bus_message& call) {
      sd_bus_message_append(&call, "isvu", id, "clicked", "i", 0, 0);
    })) << id;
  }
  EXPECT_FALSE(panel->call(menu, menuInterface, "GetProperty", [](sd_bus_message& call) {
    sd_bus_message_append(&call, "is", 1, "nonsense");
  }));
  EXPECT_FALSE(panel->call(menu, menuInterface, "Nonsense"));
  EXPECT_FALSE(panel->call(item, itemInterface, "Activate", [](sd_bus_message& call) {
    sd_bus_message_append(&call, "s", "left");
  }));
  EXPECT_EQ(quits, 0);
}

TEST_F(ResidentShellTest, AnswersAGroupOfEventsWithTheUnknownOnes) {
  startBoth();
  const auto reply = panel->call(menu, menuInterface, "EventGroup", [](sd_bus_message& call) {
    sd_bus_message_append(&call, "a(isvu)", 2, 77, "clicked", "i", 0, 0, 1, "hovered", "i", 0, 0);
  });
  ASSERT_TRUE(reply);
  ASSERT_GT(sd_bus_message_enter_container(reply.get(), 'a', "i"), 0);
  int unknown = 0;
  EXPECT_GT(sd_bus_message_read(reply.get(), "i", &unknown), 0);
  EXPECT_EQ(unknown, 77);
  EXPECT_EQ(sd_bus_message_read(reply.get(), "i", &unknown), 0);
}

TEST_F(ResidentShellTest, QuitsFromItsMenuAndFromTheBus) {
  startBoth();
  choose("Quit", "hovered");
  EXPECT_EQ(quits, 0);
  choose("Quit");
  EXPECT_EQ(quits, 1);
  ASSERT_TRUE(panel->call(face, faceInterface, "Quit"));
  EXPECT_EQ(quits, 2);
}

TEST_F(ResidentShellTest, RunsASpeedTestOnRequest) {
  startBoth();
  ASSERT_TRUE(panel->call(face, faceInterface, "RunSpeedTest"));
  EXPECT_EQ(speedTests, 1);
  choose("Speed Test");
  EXPECT_EQ(speedTests, 2);
}

TEST_F(ResidentShellTest, SaysInItsMenuThatASpeedTestRuns) {
  startBoth();
  speedTest.isRunning.set(true);
  settle();
  EXPECT_GT(rowOf("Testing..."), 0);
  speedTest.isRunning.set(false);
  settle();
  EXPECT_GT(rowOf("Speed Test"), 0);
}

TEST_F(ResidentShellTest, AsksForThePanelWhereTheItemWasActivatedWithTheTokenOfThatClickAlone) {
  startBoth();
  const auto activate = [&](int x, int y) {
    ASSERT_TRUE(panel->call(item, itemInterface, "Activate", [&](sd_bus_message& call) {
      sd_bus_message_append(&call, "ii", x, y);
    }));
  };
  ASSERT_TRUE(panel->call(item, itemInterface, "ProvideXdgActivationToken",
                          [](sd_bus_message& call) { sd_bus_message_append(&call, "s", "t1"); }));
  activate(812, 16);
  activate(-5, 2000);
  using Request = WindowRequest;
  EXPECT_EQ(requests,
            (std::vector<Request>{{Request::Kind::panel, "t1", Request::Point{812, 16}, {}},
                                  {Request::Kind::panel, "", Request::Point{-5, 2000}, {}}}));
}

TEST_F(ResidentShellTest, AsksForWindowsFromItsMenuAndFromTheBus) {
  startBoth();
  for (const char* entry : {"Open", "Details", "Settings"}) {
    choose(entry);
  }
  for (const char* method : {"OpenPanel", "OpenDetail", "OpenSettings"}) {
    ASSERT_TRUE(panel->call(face, faceInterface, method));
  }
  using Kind = WindowRequest::Kind;
  std::vector<Kind> kinds;
  for (const WindowRequest& request : requests) {
    kinds.push_back(request.kind);
  }
  EXPECT_EQ(kinds, (std::vector<Kind>{Kind::panel, Kind::detail, Kind::settings, Kind::panel,
                                      Kind::detail, Kind::settings}));
}

TEST_F(ResidentShellTest, CopiesThePublicAddressAndTheLocalOneWhileThatIsNotKnown) {
  startBoth();
  ConnectionInfo info;
  info.ipAddress = "192.168.1.20";
  monitor.connectionInfo.set(info);
  choose("Copy IP");
  info.publicIP = "203.0.113.7";
  monitor.connectionInfo.set(info);
  choose("Copy IP");
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[0].text, "192.168.1.20");
  EXPECT_EQ(requests[1].text, "203.0.113.7");
}

TEST_F(ResidentShellTest, PublishesConnectionProcessesAndSpeedTest) {
  startBoth();
  ConnectionInfo info;
  info.publicIP = "203.0.113.7";
  monitor.connectionInfo.set(info);
  tracker.processes.set({{812, "browser", 5, 6, 11, 1.0}});
  speedTest.lastResult.set(SpeedTestResult{7.0, 100.0, 20.0, 900});
  settle();
  EXPECT_EQ(panel->text(face, faceInterface, "PublicIp"), "203.0.113.7");
  const auto processes = panel->get(face, faceInterface, "Processes", "a(isxxxd)");
  ASSERT_TRUE(processes);
  ASSERT_GT(sd_bus_message_enter_container(processes.get(), 'a', "(isxxxd)"), 0);
  int id = 0;
  const char* name = nullptr;
  ASSERT_GT(sd_bus_message_enter_container(processes.get(), 'r', "isxxxd"), 0);
  sd_bus_message_read(processes.get(), "is", &id, &name);
  EXPECT_EQ(id, 812);
  EXPECT_STREQ(name, "browser");
  EXPECT_TRUE(panel->get(face, faceInterface, "LastSpeedTest", "a(dddx)"));
}

TEST_F(ResidentShellTest, AsksTheInstanceThatRunsForItsPanel) {
  startBoth();
  settle();
  int secondFoundAnother = 0;
  SessionBus secondBus(loop, daemon.address());
  const ResidentShell second(
      loop, secondBus, ResidentSources{sampler, monitor, tracker, speedTest, settings, defaults},
      ResidentShell::Actions{[] {}, [&] { ++secondFoundAnother; }, [] {}, [](const auto&) {}});
  EXPECT_TRUE(runUntil(loop, [&] { return secondFoundAnother == 1; }));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].kind, WindowRequest::Kind::panel);
  EXPECT_EQ(foundAnother, 0);
}

} // namespace
} // namespace tidewell::test
