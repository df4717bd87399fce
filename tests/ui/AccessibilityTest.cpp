#include "support/Panel.h"
#include "support/ReadAloud.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QtTest/QTest>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <algorithm>

namespace tidewell::test {
namespace {

class AccessibilityTest : public testing::Test, protected Panel {};

TEST_F(AccessibilityTest, ReadsEverythingInOrder) {
  sampler.currentDownloadBytesPerSec.set(1'250'000);
  sampler.currentUploadBytesPerSec.set(12'000);
  sampler.latencyMs.set(23.6);
  speedTest.lastResult.set(SpeedTestResult{1'700'000'000.0, 245.6, 19.2, 812});
  open();
  const auto text = QAccessible::StaticText;
  const auto press = QAccessible::Button;
  const std::vector<Spoken> expected = {
      {text, "Current throughput"},
      {text, "Download 1.2 MB/s"},
      {text, "Download 10.0 Mbps"},
      {text, "Status Excellent"},
      {text, "Upload 12 KB/s"},
      {text, "Latency 24 ms"},
      {text, "Jitter 0.0 ms"},
      {text, "Packet Loss 0.0 %"},
      {QAccessible::Chart, "Bandwidth (last 5 min)"},
      {text, "Network Unknown"},
      {text, "Interface en0"},
      {text, "Local IP unknown"},
      {text, "Public IP unknown"},
      {text, "DNS unknown"},
      {text, "Speed Test Result: download 246 Mbps, upload 19 Mbps, 22:13"},
      {press, "Speed Test"},
      {press, "Copy IP"},
      {press, "Details"},
      {press, "Settings"},
      {press, "Quit"},
  };
  EXPECT_EQ(readAloud(*view), expected);
}

TEST_F(AccessibilityTest, DescribesTheChart) {
  sampler.snapshots.set(samples({1'000'000, 3'000'000}));
  open();
  auto* const chart = QAccessible::queryAccessibleInterface(&only<MiniGraphView>());
  EXPECT_EQ(chart->text(QAccessible::Description).toStdString(),
            "Download: current 3.0 MB/s, average 2.0 MB/s, peak 3.0 MB/s. "
            "Upload: current 1.5 MB/s, average 1.0 MB/s, peak 1.5 MB/s.");
}

TEST_F(AccessibilityTest, IsPressedThroughTheInterface) {
  open();
  QAccessibleActionInterface* const actions =
      QAccessible::queryAccessibleInterface(&button(2))->actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::pressAction());
  // The button shows for a moment that it is down.
  EXPECT_TRUE(QTest::qWaitFor([this] { return calls.openDetail == 1; }));
}

// Qt keeps silent unless a screen reader is there; there is no public way to say that one is.
void setScreenReader(bool isThere) {
  QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(isThere);
}

// The update handler of the process is one function without a state of its own.
std::vector<std::string>* heard = nullptr;
void hear(QAccessibleEvent* event) {
  if (heard && event->type() == QAccessible::NameChanged) {
    heard->push_back(event->accessibleInterface()->text(QAccessible::Name).toStdString());
  }
}

TEST_F(AccessibilityTest, TellsOfEveryTextThatChangesAndOfNoOther) {
  open();
  std::vector<std::string> names;
  heard = &names;
  QAccessible::UpdateHandler before = QAccessible::installUpdateHandler(hear);
  setScreenReader(true);
  sampler.latencyMs.set(31.0);
  sampler.latencyMs.set(31.2); // reads the same
  monitor.connectionInfo.mutate([](ConnectionInfo& info) { info.dns = "9.9.9.9"; });
  speedTest.isRunning.set(true);
  setScreenReader(false);
  QAccessible::installUpdateHandler(before);
  heard = nullptr;
  EXPECT_EQ(names, (std::vector<std::string>{"Latency 31 ms", "DNS 9.9.9.9", "Testing..."}));
}

TEST_F(AccessibilityTest, ReadsLongNamesInFull) {
  const std::string name(200, 'W');
  monitor.connectionInfo.mutate([&](ConnectionInfo& info) { info.networkName = name; });
  open();
  EXPECT_EQ(row(0).accessibleName().toStdString(), "Network " + name);
  EXPECT_EQ(row(0).toolTip().toStdString(), name);
}

} // namespace
} // namespace tidewell::test
