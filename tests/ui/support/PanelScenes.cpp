#include "Evening.h"
#include "Panel.h"
#include "Scene.h"

#include <limits>
#include <utility>

namespace tidewell::test {

namespace {

constexpr std::int64_t enormous = std::int64_t{1} << 62;

void fill(Panel& panel) {
  panel.sampler.currentDownloadBytesPerSec.set(8'412'000);
  panel.sampler.currentUploadBytesPerSec.set(1'240'000);
  panel.sampler.latencyMs.set(18.4);
  panel.sampler.jitterMs.set(1.44);
  panel.sampler.packetLossPercent.set(0.0);
  panel.sampler.snapshots.set(evening(300));
  ConnectionInfo info;
  info.networkName = "Riverside";
  info.interfaceName = "Wi-Fi (wlan0)";
  info.ipAddress = "192.168.1.20";
  info.publicIP = "203.0.113.77";
  info.dns = "192.168.1.1";
  panel.monitor.connectionInfo.set(info);
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
            Panel::settle();
            QWidget* const view = panel->view.get();
            return std::shared_ptr<QWidget>(std::move(panel), view);
          }};
}

void setOffline(Panel& panel) {
  panel.sampler.isConnected = false;
  panel.monitor.isConnected.set(false);
  panel.sampler.currentDownloadBytesPerSec.set(0);
  panel.sampler.currentUploadBytesPerSec.set(0);
  panel.sampler.packetLossPercent.set(30.0);
  panel.sampler.latencyMs.set(0.0);
  panel.monitor.connectionInfo.set(ConnectionInfo{});
}

void setAbsurd(Panel& panel) {
  panel.sampler.currentDownloadBytesPerSec.set(enormous);
  panel.sampler.currentUploadBytesPerSec.set(enormous);
  panel.sampler.latencyMs.set(std::numeric_limits<double>::quiet_NaN());
  panel.sampler.jitterMs.set(1e300);
  panel.sampler.packetLossPercent.set(std::numeric_limits<double>::infinity());
  panel.sampler.snapshots.set(samples({0, enormous, 12, enormous / 2, 0}));
  ConnectionInfo info;
  info.networkName = std::string(200, 'W') + "end";
  info.interfaceName = "Wi-Fi\n(\x1b[31mwlan0\xff)";
  info.ipAddress = "2001:0db8:85a3:0000:0000:8a2e:0370:7334";
  info.publicIP = "<b>203.0.113.77</b>";
  info.dns = "\u202E1.1.1.1";
  panel.monitor.connectionInfo.set(info);
  panel.speedTest.lastResult.set(SpeedTestResult{1e300, 1e300, -1.0, 0});
}

void setRightToLeft(Panel& panel) {
  panel.monitor.connectionInfo.mutate([](ConnectionInfo& info) {
    info.networkName = "\u05D4\u05E8\u05E9\u05EA \u05E9\u05DC\u05D9 5G";
  });
}

const SpeedTestResult evenResult{1'700'000'000.0, 245.6, 19.2, 812};

} // namespace

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
      scene("down", setOffline),
      scene("running", [](Panel& panel) { panel.speedTest.isRunning.set(true); }),
      scene("result", [](Panel& panel) { panel.speedTest.lastResult.set(evenResult); }),
      scene("copied", asItIs, Backdrop::translucent, [](Panel& panel) { panel.button(1).click(); }),
      scene("emptyHistory", [](Panel& panel) { panel.sampler.snapshots.set({}); }),
      scene("oneSample", [](Panel& panel) { panel.sampler.snapshots.set(evening(1)); }),
      scene("absurd", setAbsurd),
      scene("rightToLeft", setRightToLeft),
  };
}

} // namespace tidewell::test
