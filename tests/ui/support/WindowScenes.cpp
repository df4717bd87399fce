#include "Details.h"
#include "Preferences.h"
#include "Scene.h"

#include <QAbstractItemView>
#include <QLinearGradient>
#include <QPainter>
#include <QPolygon>
#include <QRadioButton>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace tidewell::test {

namespace {

ConnectionInfo ordinaryConnection() {
  ConnectionInfo info;
  info.networkName = "Riverside";
  info.interfaceName = "Wi-Fi (wlan0)";
  info.ipAddress = "192.168.1.20";
  info.publicIP = "203.0.113.77";
  info.dns = "192.168.1.1";
  return info;
}

ConnectionInfo absurdConnection() {
  ConnectionInfo info;
  info.networkName = std::string(200, 'W') + "end";
  info.interfaceName = "Wi-Fi\n(\x1b[31mwlan0\xff)";
  info.ipAddress = "2001:0db8:85a3:0000:0000:8a2e:0370:7334";
  info.publicIP = "<b>203.0.113.77</b>";
  info.dns = "\u202E1.1.1.1";
  return info;
}

constexpr std::int64_t enormous = std::int64_t{1} << 62;

void fill(Panel& panel) {
  panel.sampler.currentDownloadBytesPerSec.set(8'412'000);
  panel.sampler.currentUploadBytesPerSec.set(1'240'000);
  panel.sampler.latencyMs.set(18.4);
  panel.sampler.jitterMs.set(1.44);
  panel.sampler.packetLossPercent.set(0.0);
  panel.sampler.snapshots.set(evening(300));
  panel.monitor.connectionInfo.set(ordinaryConnection());
}

Scene scene(
    std::string name, const std::function<void(Panel&)>& arrange,
    Backdrop backdrop = Backdrop::translucent,
    const std::function<void(Panel&)>& act = [](Panel&) {}) {
  return {"panel-" + std::move(name), [arrange, backdrop, act] {
            auto panel = std::make_shared<Panel>();
            fill(*panel);
            arrange(*panel);
            panel->open(backdrop);
            act(*panel);
            return ownedBy(panel, panel->view.get());
          }};
}

/// A picture such as a photograph: bright above, with edges.
void paintPhotograph(QPainter& painter, const QRect& rect) {
  QLinearGradient sky(rect.topLeft(), rect.bottomLeft());
  sky.setColorAt(0.0, QColor(255, 214, 140));
  sky.setColorAt(0.6, QColor(120, 170, 230));
  painter.fillRect(rect, sky);
  painter.setPen(Qt::NoPen);
  for (int hill = 0; hill < 4; ++hill) {
    const int base = rect.bottom() - 60 + 20 * hill;
    painter.setBrush(QColor(40 + 30 * hill, 90 + 30 * hill, 60));
    painter.drawPolygon(QPolygon({{rect.left(), base + 60},
                                  {rect.left() + 80 + 60 * hill, base - 240 + 50 * hill},
                                  {rect.right(), base + 60}}));
  }
}

/// The panel over white, black and a photograph.
class Backdrops final : public QWidget {
public:
  explicit Backdrops(std::shared_ptr<Panel> panel) : m_panel(std::move(panel)) {
    resize(3 * (m_panel->view->width() + gap) + gap, m_panel->view->height() + 2 * gap);
  }

protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const int column = width() / 3;
    painter.fillRect(0, 0, column, height(), Qt::white);
    painter.fillRect(column, 0, column, height(), Qt::black);
    paintPhotograph(painter, QRect(2 * column, 0, width() - 2 * column, height()));
    for (int index = 0; index < 3; ++index) {
      m_panel->view->render(&painter, QPoint(gap + index * column, gap), {}, QWidget::DrawChildren);
    }
  }

private:
  static constexpr int gap = 12;
  std::shared_ptr<Panel> m_panel;
};

Scene backdrops() {
  return {"panel-backdrops", [] {
            auto panel = std::make_shared<Panel>();
            fill(*panel);
            panel->open(Backdrop::translucent);
            Panel::settle();
            return std::make_shared<Backdrops>(panel);
          }};
}

void setPanelOffline(Panel& panel) {
  panel.sampler.isConnected = false;
  panel.monitor.isConnected.set(false);
  panel.sampler.currentDownloadBytesPerSec.set(0);
  panel.sampler.currentUploadBytesPerSec.set(0);
  panel.sampler.packetLossPercent.set(30.0);
  panel.sampler.latencyMs.set(0.0);
  panel.monitor.connectionInfo.set(ConnectionInfo{});
}

void setPanelAbsurd(Panel& panel) {
  panel.sampler.currentDownloadBytesPerSec.set(enormous);
  panel.sampler.currentUploadBytesPerSec.set(enormous);
  panel.sampler.latencyMs.set(nan);
  panel.sampler.jitterMs.set(1e300);
  panel.sampler.packetLossPercent.set(infinite);
  panel.sampler.snapshots.set(samples({0, enormous, 12, enormous / 2, 0}));
  panel.monitor.connectionInfo.set(absurdConnection());
  panel.speedTest.lastResult.set(SpeedTestResult{1e300, 1e300, -1.0, 0});
}

void setRightToLeft(Panel& panel) {
  panel.monitor.connectionInfo.mutate([](ConnectionInfo& info) {
    info.networkName = "\u05D4\u05E8\u05E9\u05EA \u05E9\u05DC\u05D9 5G";
  });
}

const SpeedTestResult evenResult{1'700'000'000.0, 245.6, 19.2, 812};
constexpr const char* failure = "the server does not answer in time";

void failAfterResult(SpeedTestState& speedTest) {
  speedTest.lastMeasured.set(evenResult);
  speedTest.lastResult.set(SpeedTestResult{1'700'000'600.0, 0.0, 0.0, 0});
  speedTest.failure.set(failure);
}

constexpr QSize windowSize = DetailWindowView::defaultSize;
// Tall enough for a whole tab.
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
  details.monitor.connectionInfo.set(ordinaryConnection());
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

// Ten gigabytes per second, and invalid latencies.
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
  details.sampler.packetLossPercent.set(infinite);
  auto list = programs({std::string(200, 'W') + "end", "", "\u05D3\u05E4\u05D3\u05E4\u05DF",
                        "two\nlines\x1b[31m\xff", "<b>bold</b>", "e\u0301clair"});
  list[0].downloadBytesPerSec = std::int64_t{1} << 62;
  list[0].totalBytes = std::int64_t{1} << 62;
  list[0].usagePercent = nan;
  list[1].usagePercent = 7.0;
  list[2].id = std::numeric_limits<std::int32_t>::min();
  details.tracker.processes.set(list);
  details.monitor.connectionInfo.set(absurdConnection());
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
            return ownedBy(details, details->view.get());
          }};
}

// Focuses a time range, as the keyboard does.
void reachRanges(Details& details) {
  details.view->activateWindow();
  details.all<QRadioButton>(overview)[2]->click();
  details.all<QRadioButton>(overview)[2]->setFocus(Qt::TabFocusReason);
}

} // namespace

SnapshotList evening(int count) {
  SnapshotList list;
  for (int index = 0; index < count; ++index) {
    const double noise = 0.5 + 0.5 * std::sin(index * 12.9898) * std::cos(index * 4.1414);
    const bool isBusy = (index > 60 && index < 130) || index > 240;
    const double down = (isBusy ? 7.2e6 : 0.9e6) + 1.6e6 * noise;
    const double up = 0.7e6 + 0.9e6 * noise * noise + (index % 50 < 8 ? 1.1e6 : 0.0);
    const double latency = 18.0 + 9.0 * noise + (isBusy ? 14.0 : 0.0);
    list.push_back(std::make_shared<const NetworkSnapshot>(
        1.7e9 + 2.0 * index, static_cast<std::int64_t>(down), static_cast<std::int64_t>(up),
        latency, 1.4, 0.0));
  }
  return list;
}

std::vector<Scene> panelScenes() {
  const auto asItIs = [](Panel&) {};
  return {
      scene("excellent", asItIs),
      scene("opaque", asItIs, Backdrop::opaque),
      scene("good", [](Panel& panel) { panel.sampler.latencyMs.set(62.0); }),
      scene("degraded",
            [](Panel& panel) {
              panel.sampler.latencyMs.set(184.3);
              panel.sampler.packetLossPercent.set(10.0);
            }),
      scene("down", setPanelOffline),
      scene("running", [](Panel& panel) { panel.speedTest.isRunning.set(true); }),
      scene("result", [](Panel& panel) { panel.speedTest.lastResult.set(evenResult); }),
      scene("failed", [](Panel& panel) { failAfterResult(panel.speedTest); }),
      scene("firstFailed", [](Panel& panel) { panel.speedTest.failure.set(failure); }),
      scene("copied", asItIs, Backdrop::translucent, [](Panel& panel) { panel.button(1).click(); }),
      scene("emptyHistory", [](Panel& panel) { panel.sampler.snapshots.set({}); }),
      scene("oneSample", [](Panel& panel) { panel.sampler.snapshots.set(evening(1)); }),
      scene("absurd", setPanelAbsurd),
      scene("rightToLeft", setRightToLeft),
      backdrops(),
  };
}

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
      scene("diagnosticsFailed", diagnostics, tall,
            [](Details& details) { failAfterResult(details.speedTest); }),
      scene("diagnosticsAbsurd", diagnostics, tall, setAbsurd),
  };
}

} // namespace tidewell::test
