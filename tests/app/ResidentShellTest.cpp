#include "app/ResidentShellCase.h"
#include "format/SteadyLabel.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string_view>
#include <vector>

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
  const std::map<const char*, std::vector<const char*>> properties = {
      {"s",
       {"Category", "Id", "Title", "Status", "IconThemePath", "IconName", "OverlayIconName",
        "AttentionIconName", "AttentionMovieName", "XAyatanaLabel", "XAyatanaLabelGuide"}},
      {"o", {"Menu"}},
      {"b", {"ItemIsMenu"}},
      {"a(iiay)", {"IconPixmap", "OverlayIconPixmap", "AttentionIconPixmap"}},
      {"(sa(iiay)ss)", {"ToolTip"}},
      {"u", {"XAyatanaOrderingIndex"}}};
  for (const auto& [type, names] : properties) {
    for (const char* name : names) {
      EXPECT_TRUE(panel->get(item, itemInterface, name, type)) << name << " " << panel->error;
    }
  }
  EXPECT_FALSE(panel->get(item, itemInterface, "Nonsense", "s"));
}

TEST_F(ResidentShellTest, HasTheDocumentedPropertiesAndSignals) {
  startBoth();
  const std::map<const char*, std::vector<const char*>> properties = {
      {"s",
       {"MenubarText", "Status", "InterfaceType", "NetworkName", "InterfaceName", "IpAddress",
        "PublicIp", "Dns", "SpeedTestFailure"}},
      {"x", {"DownloadBytesPerSec", "UploadBytesPerSec"}},
      {"d", {"LatencyMs", "JitterMs", "PacketLossPercent"}},
      {"b", {"IsConnected", "SpeedTestIsRunning"}},
      {"as", {"Faces"}},
      {"a(dxxddd)", {"Samples"}},
      {"a(isxxxd)", {"Processes"}},
      {"a(dddx)", {"LastSpeedTest", "LastMeasuredSpeedTest"}}};
  for (const auto& [type, names] : properties) {
    for (const char* name : names) {
      EXPECT_TRUE(panel->get(face, faceInterface, name, type)) << name << " " << panel->error;
    }
  }
  const auto reply = panel->call(face, "org.freedesktop.DBus.Introspectable", "Introspect");
  const char* text = "";
  ASSERT_TRUE(reply && sd_bus_message_read(reply.get(), "s", &text) > 0);
  std::string description;
  std::ranges::copy_if(std::string_view(text), std::back_inserter(description),
                       [](char letter) { return letter != ' ' && letter != '\n'; });
  for (const char* signal :
       {"<signalname=\"SampleAdded\"><argtype=\"d\"name=\"time\"/><argtype=\"x\"name=\"download\"/>"
        "<argtype=\"x\"name=\"upload\"/><argtype=\"d\"name=\"latency\"/>"
        "<argtype=\"d\"name=\"jitter\"/><argtype=\"d\"name=\"loss\"/></signal>",
        "<signalname=\"WindowRequested\"><argtype=\"s\"name=\"window\"/></signal>"}) {
    EXPECT_NE(description.find(signal), std::string::npos) << signal << description;
  }
}

TEST_F(ResidentShellTest, SaysInTheLabelWhatTheMenuBarSaysInASteadyWidth) {
  hostProcess("gnome-shell");
  startBoth();
  publish(12'345, 3'210);
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabel"), steadyLabel("↓12K ↑3K"));
  EXPECT_EQ(panel->text(face, faceInterface, "MenubarText"), "↓12K ↑3K");
  const std::string guide = panel->text(item, itemInterface, "XAyatanaLabelGuide");
  publish(9'999'999'999, 0);
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabelGuide"), guide);
  EXPECT_EQ(panel->text(item, itemInterface, "XAyatanaLabel"), steadyLabel("↓10000M ↑0K"));
}

TEST_F(ResidentShellTest, TellsHostsOfLabelsAloneAboutLabels) {
  hostProcess("gnome-shell");
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

TEST_F(ResidentShellTest, TellsHostsThatReadAllAtOnceOnlyOnceAboutASample) {
  for (const auto& [host, toolTips] : {std::pair("xfce4-panel", 0), std::pair("lxqt-panel", 1)}) {
    shell.reset();
    hostProcess(host);
    startBoth();
    settle();
    panel->signals.clear();
    publish(12'345);
    settle();
    EXPECT_EQ(panel->signals["NewIcon"], 1) << host;
    EXPECT_EQ(panel->signals["NewToolTip"], toolTips) << host;
    sampler.latencyMs.set(sampler.latencyMs.get() + 3.0);
    publish(12'345);
    settle();
    EXPECT_EQ(panel->signals["NewIcon"], 1) << host;
    EXPECT_EQ(panel->signals["NewToolTip"], toolTips + 1) << host;
    sampler.currentDownloadBytesPerSec.set(0);
  }
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

TEST_F(ResidentShellTest, PublishesEachValueUnderItsName) {
  startBoth();
  sampler.currentDownloadBytesPerSec.set(1);
  sampler.currentUploadBytesPerSec.set(2);
  sampler.latencyMs.set(3.0);
  sampler.jitterMs.set(4.0);
  sampler.packetLossPercent.set(5.0);
  monitor.connectionInfo.set({"network", "interface", {}, "local", "public", "server", {}});
  const auto number = [this](const char* name) {
    std::int64_t value = 0;
    const auto reply = panel->get(face, faceInterface, name, "x");
    return reply && sd_bus_message_read(reply.get(), "x", &value) > 0 ? value : -1;
  };
  const auto real = [this](const char* name) {
    double value = 0.0;
    const auto reply = panel->get(face, faceInterface, name, "d");
    return reply && sd_bus_message_read(reply.get(), "d", &value) > 0 ? value : -1.0;
  };
  EXPECT_EQ(number("DownloadBytesPerSec"), 1);
  EXPECT_EQ(number("UploadBytesPerSec"), 2);
  EXPECT_EQ(real("LatencyMs"), 3.0);
  EXPECT_EQ(real("JitterMs"), 4.0);
  EXPECT_EQ(real("PacketLossPercent"), 5.0);
  EXPECT_EQ(panel->text(face, faceInterface, "NetworkName"), "network");
  EXPECT_EQ(panel->text(face, faceInterface, "InterfaceName"), "interface");
  EXPECT_EQ(panel->text(face, faceInterface, "IpAddress"), "local");
  EXPECT_EQ(panel->text(face, faceInterface, "PublicIp"), "public");
  EXPECT_EQ(panel->text(face, faceInterface, "Dns"), "server");
}

TEST_F(ResidentShellTest, PublishesTheFieldsOfItsListsInTheirOrder) {
  startBoth();
  sampler.snapshots.set({std::make_shared<const NetworkSnapshot>(1.0, 2, 3, 4.0, 5.0, 6.0)});
  tracker.processes.set({{812, "browser", 5, 6, 11, 1.0}});
  speedTest.lastResult.set(SpeedTestResult{7.0, 100.0, 20.0, 900});
  settle();
  double time = 0.0;
  double reals[3] = {};
  std::int64_t numbers[3] = {};
  const auto samples = panel->get(face, faceInterface, "Samples", "a(dxxddd)");
  ASSERT_TRUE(samples);
  sd_bus_message_read(samples.get(), "a(dxxddd)", 1, &time, &numbers[0], &numbers[1], &reals[0],
                      &reals[1], &reals[2]);
  EXPECT_EQ(time, 1.0);
  EXPECT_EQ(std::vector(numbers, numbers + 2), (std::vector<std::int64_t>{2, 3}));
  EXPECT_EQ(std::vector(reals, reals + 3), (std::vector{4.0, 5.0, 6.0}));
  int id = 0;
  const char* name = "";
  const auto processes = panel->get(face, faceInterface, "Processes", "a(isxxxd)");
  ASSERT_TRUE(processes);
  sd_bus_message_read(processes.get(), "a(isxxxd)", 1, &id, &name, &numbers[0], &numbers[1],
                      &numbers[2], &reals[0]);
  EXPECT_EQ(id, 812);
  EXPECT_STREQ(name, "browser");
  EXPECT_EQ(std::vector(numbers, numbers + 3), (std::vector<std::int64_t>{5, 6, 11}));
  EXPECT_EQ(reals[0], 1.0);
  const auto results = panel->get(face, faceInterface, "LastSpeedTest", "a(dddx)");
  ASSERT_TRUE(results);
  sd_bus_message_read(results.get(), "a(dddx)", 1, &time, &reals[0], &reals[1], &numbers[0]);
  EXPECT_EQ(time, 7.0);
  EXPECT_EQ(reals[0], 100.0);
  EXPECT_EQ(reals[1], 20.0);
  EXPECT_EQ(numbers[0], 900);
}

TEST_F(ResidentShellTest, PublishesTheLastMeasurementAndWhyALaterTestFailed) {
  startBoth();
  speedTest.lastMeasured.set(SpeedTestResult{7.0, 100.0, 20.0, 900});
  speedTest.lastResult.set(SpeedTestResult{9.0, 0.0, 0.0, 0});
  speedTest.failure.set("the server cannot be reached");
  settle();
  double time = 0.0;
  const auto measured = panel->get(face, faceInterface, "LastMeasuredSpeedTest", "a(dddx)");
  ASSERT_TRUE(measured);
  double down = 0.0;
  double up = 0.0;
  std::int64_t responsiveness = 0;
  sd_bus_message_read(measured.get(), "a(dddx)", 1, &time, &down, &up, &responsiveness);
  EXPECT_EQ(time, 7.0);
  EXPECT_EQ(down, 100.0);
  EXPECT_EQ(panel->text(face, faceInterface, "SpeedTestFailure"), "the server cannot be reached");
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
