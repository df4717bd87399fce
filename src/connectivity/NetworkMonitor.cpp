#include "connectivity/NetworkMonitor.h"

#include "platform/Platform.h"

namespace tidewell {
namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

constexpr const char* queueLabel = "com.halden.tidewell.pathmonitor";

InterfaceType linkKind(const PathReport& report) {
  if (report.usesWifi) {
    return InterfaceType::wifi;
  }
  if (report.usesWiredEthernet) {
    return InterfaceType::ethernet;
  }
  return report.usesCellular ? InterfaceType::cellular : InterfaceType::other;
}

} // namespace

std::shared_ptr<NetworkMonitor> NetworkMonitor::make(const Platform& platform) {
  auto monitor = std::make_shared<NetworkMonitor>(platform);
  monitor->begin(platform.paths);
  return monitor;
}

NetworkMonitor::NetworkMonitor(const Platform& platform)
    : m_main(platform.scheduler.main()), m_details(platform),
      m_queue(platform.scheduler.makeSerialQueue(queueLabel)) {}

void NetworkMonitor::begin(PathMonitor& paths) {
  // Queued before the watch begins, so that the first report is published last.
  m_queue->post([this] { return fetchAtStart(); });
  m_watch = paths.watch(*m_queue, [this](const PathReport& report) { pathChanged(report); });
}

void NetworkMonitor::pathChanged(const PathReport& report) {
  m_queue->post([this, connected = report.isSatisfied, type = linkKind(report)] {
    return fetchAndPublish(connected, type);
  });
}

Async<> NetworkMonitor::fetchAtStart() {
  // Before the first report, details are collected as for a Wi-Fi link.
  const ConnectionInfo info = co_await m_details.fetchConnectionInfo(InterfaceType::wifi);
  m_main.post([weak = weak_from_this(), info] {
    if (const auto self = weak.lock()) {
      self->connectionInfo.set(info);
    }
  });
}

Async<> NetworkMonitor::fetchAndPublish(bool connected, InterfaceType type) {
  const ConnectionInfo info = co_await m_details.fetchConnectionInfo(type);
  m_main.post([weak = weak_from_this(), connected, type, info] {
    if (const auto self = weak.lock()) {
      self->isConnected.set(connected);
      self->interfaceType.set(type);
      self->connectionInfo.set(info);
    }
  });
}

} // namespace tidewell
