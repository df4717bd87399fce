#include "connectivity/NetworkMonitor.h"

#include "base/Service.h"
#include "platform/Platform.h"

#include <utility>

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
  auto monitor = makeService<NetworkMonitor>(platform.scheduler.main(), platform);
  monitor->begin(platform.paths);
  return monitor;
}

NetworkMonitor::NetworkMonitor(const Platform& platform)
    : m_main(platform.scheduler.main()), m_details(platform),
      m_queue(platform.scheduler.makeSerialQueue(queueLabel)) {}

void NetworkMonitor::begin(PathMonitor& paths) {
  // Before the first report the details are those of a Wi-Fi link, whatever the real one is. It is
  // queued first: the first report may be handled before watch() returns, and has the last word.
  m_queue->post([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) {
      return;
    }
    auto info = self->m_details.fetchConnectionInfo(InterfaceType::wifi);
    self->m_main.post([weak, info = std::move(info)] {
      if (const auto alive = weak.lock()) {
        alive->connectionInfo.set(info);
      }
    });
  });
  m_watch = paths.watch(*m_queue, [weak = weak_from_this()](const PathReport& report) {
    if (const auto self = weak.lock()) {
      self->pathChanged(report);
    }
  });
}

void NetworkMonitor::pathChanged(const PathReport& report) {
  m_queue->post([weak = weak_from_this(), connected = report.isSatisfied, type = linkKind(report)] {
    if (const auto self = weak.lock()) {
      self->fetchAndPublish(connected, type);
    }
  });
}

void NetworkMonitor::fetchAndPublish(bool connected, InterfaceType type) {
  auto info = m_details.fetchConnectionInfo(type);
  m_main.post([weak = weak_from_this(), connected, type, info = std::move(info)] {
    if (const auto self = weak.lock()) {
      self->isConnected.set(connected);
      self->interfaceType.set(type);
      self->connectionInfo.set(info);
    }
  });
}

} // namespace tidewell
