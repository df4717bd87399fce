#include "Details.h"
#include "Evening.h"
#include "Scene.h"

#include <QRadioButton>
#include <QScrollBar>

#include <limits>
#include <utility>

namespace tidewell::test {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr QSize windowSize = DetailWindowView::defaultSize;
// High enough to show all of a tab.
constexpr QSize tall{680, 860};

enum Tab { overview, processes, history, diagnostics };

const std::vector<std::string> familiarNames = {
    "firefox",      "syncthing",      "thunderbird", "apt",  "Signal",
    "transmission", "NetworkManager", "ssh",         "curl", "systemd-resolved"};

void fill(Details& details) {
  details.sampler.currentDownloadBytesPerSec.set(8'412'000);
  details.sampler.latencyMs.set(18.4);
  details.sampler.jitterMs.set(6.44);
  details.sampler.packetLossPercent.set(0.5);
  details.sampler.snapshots.set(evening(300));
  details.tracker.processes.set(programs(familiarNames));
  ConnectionInfo info;
  info.networkName = "Riverside";
  info.interfaceName = "Wi-Fi (wlan0)";
  info.ipAddress = "192.168.1.20";
  info.publicIP = "203.0.113.77";
  info.dns = "192.168.1.1";
  details.monitor.connectionInfo.set(info);
  details.speedTest.lastResult.set(SpeedTestResult{1'700'000'000.0, 245.6, 19.2, 812});
}

void setEmpty(Details& details) {
  details.sampler.currentDownloadBytesPerSec.set(12'000);
  details.sampler.snapshots.set({});
  details.tracker.processes.set({});
  details.speedTest.lastResult.set(std::nullopt);
}

void setOffline(Details& details) {
  details.monitor.isConnected.set(false);
  details.monitor.connectionInfo.set(ConnectionInfo{});
  details.sampler.latencyMs.set(0.0);
  details.sampler.jitterMs.set(21.0);
  details.sampler.packetLossPercent.set(30.0);
  details.speedTest.lastResult.set(std::nullopt);
}

// Ten gigabytes a second, and latencies that are none.
SnapshotList torrent() {
  SnapshotList list;
  for (int index = 0; index < 300; ++index) {
    const std::int64_t rate = index % 3 == 0 ? 0 : 10'000'000'000;
    const double latency = index % 40 < 20 ? 1e4 : index % 40 < 39 ? nan : 2e4;
    list.push_back(
        std::make_shared<const NetworkSnapshot>(1e300, rate, rate / 4, latency, 1e300, nan));
  }
  return list;
}

void setAbsurd(Details& details) {
  details.sampler.currentDownloadBytesPerSec.set(std::int64_t{1} << 62);
  details.sampler.snapshots.set(torrent());
  details.sampler.latencyMs.set(nan);
  details.sampler.jitterMs.set(1e300);
  details.sampler.packetLossPercent.set(std::numeric_limits<double>::infinity());
  auto list = programs({std::string(200, 'W') + "end", "", "\u05D3\u05E4\u05D3\u05E4\u05DF",
                        "two\nlines\x1b[31m\xff", "<b>bold</b>", "e\u0301clair"});
  list[0].downloadBytesPerSec = std::int64_t{1} << 62;
  list[0].totalBytes = std::int64_t{1} << 62;
  list[0].usagePercent = nan;
  list[1].usagePercent = 7.0;
  list[2].id = std::numeric_limits<std::int32_t>::min();
  details.tracker.processes.set(list);
  ConnectionInfo info;
  info.networkName = std::string(200, 'W') + "end";
  info.interfaceName = "Wi-Fi\n(\x1b[31mwlan0\xff)";
  info.ipAddress = "2001:0db8:85a3:0000:0000:8a2e:0370:7334";
  info.publicIP = "<b>203.0.113.77</b>";
  info.dns = "\u202E1.1.1.1";
  details.monitor.connectionInfo.set(info);
  details.speedTest.lastResult.set(
      SpeedTestResult{1e300, 1e300, -1.0, std::numeric_limits<std::int64_t>::max()});
}

using Change = std::function<void(Details&)>;

Scene scene(
    std::string name, Tab tab, QSize size, const Change& arrange,
    const Change& act = [](Details&) {}) {
  return {"detail-" + std::move(name), [tab, size, arrange, act] {
            auto details = std::make_shared<Details>();
            fill(*details);
            arrange(*details);
            details->open(tab, size);
            act(*details);
            Panel::settle();
            QWidget* const view = details->view.get();
            return std::shared_ptr<QWidget>(std::move(details), view);
          }};
}

// As it looks to somebody who uses the keyboard alone.
void reachRanges(Details& details) {
  details.view->activateWindow();
  details.all<QRadioButton>(overview)[2]->click();
  details.all<QRadioButton>(overview)[2]->setFocus(Qt::TabFocusReason);
}

} // namespace

std::vector<Scene> detailScenes() {
  const Change asItIs = [](Details&) {};
  return {
      scene("overview", overview, windowSize, asItIs),
      scene("overviewAll", overview, tall, asItIs),
      scene("overviewEmpty", overview, tall, setEmpty),
      scene("overviewOneSample", overview, windowSize,
            [](Details& details) { details.sampler.snapshots.set(evening(1)); }),
      scene("overviewAbsurd", overview, tall, setAbsurd),
      scene("overviewKeyboard", overview, windowSize, asItIs, reachRanges),
      scene("processes", processes, tall, asItIs),
      scene("processesScrolled", processes, windowSize, asItIs,
            [](Details& details) { details.pane(processes).verticalScrollBar()->setValue(150); }),
      scene("processesEmpty", processes, windowSize, setEmpty),
      scene("processesAbsurd", processes, windowSize, setAbsurd),
      scene("history", history, {680, 1000}, asItIs),
      scene("historyEmpty", history, windowSize, setEmpty),
      scene("historyAbsurd", history, windowSize, setAbsurd),
      scene("diagnostics", diagnostics, tall, asItIs),
      scene("diagnosticsOffline", diagnostics, tall, setOffline),
      scene("diagnosticsRunning", diagnostics, tall,
            [](Details& details) { details.speedTest.isRunning.set(true); }),
      scene("diagnosticsAbsurd", diagnostics, tall, setAbsurd),
  };
}

} // namespace tidewell::test
