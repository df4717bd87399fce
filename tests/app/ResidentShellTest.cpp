#include "app/ResidentShellCase.h"

namespace tidewell::test {
namespace {

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
      loop, secondBus, ResidentSources{sampler, monitor, tracker, speedTest, settings, preferences},
      ResidentActions{[] {}, [&] { ++secondFoundAnother; }, [] {}, [](const auto&) {}});
  EXPECT_TRUE(runUntil(loop, [&] { return secondFoundAnother == 1; }));
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].kind, WindowRequest::Kind::panel);
  EXPECT_EQ(foundAnother, 0);
}

} // namespace
} // namespace tidewell::test
