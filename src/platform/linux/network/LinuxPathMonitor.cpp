#include "platform/linux/network/LinuxPathMonitor.h"

#include "platform/linux/network/LinkKind.h"
#include "platform/linux/network/RouteSocket.h"

#include <utility>

namespace tidewell {
namespace {

PathReport reportOf(LinkKind kind) {
  return {true, kind == LinkKind::wifi, kind == LinkKind::wiredEthernet,
          kind == LinkKind::cellular};
}

} // namespace

/// A watcher. Shared with the reports that are queued for it.
struct LinuxPathMonitor::Watching {
  Watching(WorkQueue& watcherQueue, Handler watcherHandler)
      : queue(watcherQueue), handler(std::move(watcherHandler)) {}

  static void post(const std::shared_ptr<Watching>& watching, const PathReport& report) {
    watching->queue.post([watching, report] {
      if (watching->isActive) {
        watching->handler(report);
      }
    });
  }

  WorkQueue& queue;
  Handler handler;
  bool isActive = true;
};

class LinuxPathMonitor::Watch final : public PathWatch {
public:
  explicit Watch(std::shared_ptr<Watching> watching) : m_watching(std::move(watching)) {}
  ~Watch() override { m_watching->isActive = false; }

private:
  std::shared_ptr<Watching> m_watching;
};

LinuxPathMonitor::LinuxPathMonitor(EventLoop& loop, RouteSocket& socket, Observer observer,
                                   std::string sysfsRoot, const DnsPlaces& dnsPlaces)
    : m_socket(socket), m_observer(std::move(observer)), m_sysfsRoot(std::move(sysfsRoot)),
      m_dnsPlaces(dnsPlaces), m_reporter(loop, [this](const PathReport& path) { report(path); }),
      m_routeChanges(loop, [this] { look(); }), m_fileChanges(loop, dnsPlaces, [this] { look(); }) {
}

LinuxPathMonitor::~LinuxPathMonitor() = default;

std::unique_ptr<PathWatch> LinuxPathMonitor::watch(WorkQueue& queue, Handler handler) {
  look();
  auto watching = std::make_shared<Watching>(queue, std::move(handler));
  m_watching.emplace_back(watching);
  if (m_reporter.reported()) {
    Watching::post(watching, *m_reporter.reported());
  }
  return std::make_unique<Watch>(std::move(watching));
}

void LinuxPathMonitor::dnsServersChanged() {
  ++m_dnsChanges;
  look();
}

void LinuxPathMonitor::look() { m_reporter.observe(pathOver(m_socket.publicRoute())); }

void LinuxPathMonitor::report(const PathReport& report) {
  if (m_observer) {
    m_observer(report.isSatisfied);
  }
  std::erase_if(m_watching, [](const auto& watching) { return watching.expired(); });
  for (const auto& weak : m_watching) {
    if (const auto watching = weak.lock(); watching && watching->isActive) {
      Watching::post(watching, report);
    }
  }
}

ObservedPath LinuxPathMonitor::pathOver(std::optional<PublicRoute> route) const {
  if (!route || !route->isRunning) {
    return {};
  }
  const std::optional<ObservedPath>& last = m_reporter.path();
  const bool isSameLink = last && last->interfaceIndex == route->interfaceIndex &&
                          last->interfaceName == route->interfaceName;
  ObservedPath path;
  path.report = isSameLink ? last->report
                           : reportOf(linkKind(readLinkTraits(m_sysfsRoot, route->interfaceName)));
  path.interfaceIndex = route->interfaceIndex;
  path.interfaceName = std::move(route->interfaceName);
  path.sourceIPv4 = std::move(route->sourceIPv4);
  path.gateway = std::move(route->gateway);
  path.dnsServers = serversInFiles(m_dnsPlaces);
  path.dnsChanges = m_dnsChanges;
  return path;
}

} // namespace tidewell
