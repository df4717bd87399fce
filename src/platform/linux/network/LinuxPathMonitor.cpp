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
                                   std::string sysfsRoot)
    : m_socket(socket), m_observer(std::move(observer)), m_sysfsRoot(std::move(sysfsRoot)),
      m_changes(loop, [this] { look(); }) {}

LinuxPathMonitor::~LinuxPathMonitor() = default;

std::unique_ptr<PathWatch> LinuxPathMonitor::watch(WorkQueue& queue, Handler handler) {
  look();
  auto watching = std::make_shared<Watching>(queue, std::move(handler));
  m_watching.emplace_back(watching);
  Watching::post(watching, m_path->report);
  return std::make_unique<Watch>(std::move(watching));
}

void LinuxPathMonitor::look() {
  Path path = pathOver(m_socket.publicRoute());
  if (path == m_path) {
    return;
  }
  m_path = std::move(path);
  if (m_observer) {
    m_observer(m_path->report.isSatisfied);
  }
  std::erase_if(m_watching, [](const auto& watching) { return watching.expired(); });
  for (const auto& weak : m_watching) {
    if (const auto watching = weak.lock(); watching && watching->isActive) {
      Watching::post(watching, m_path->report);
    }
  }
}

LinuxPathMonitor::Path LinuxPathMonitor::pathOver(const std::optional<PublicRoute>& route) const {
  if (!route || !route->isRunning) {
    return {};
  }
  const bool isSameLink = m_path && m_path->interfaceIndex == route->interfaceIndex &&
                          m_path->interfaceName == route->interfaceName;
  const PathReport report =
      isSameLink ? m_path->report
                 : reportOf(linkKind(readLinkTraits(m_sysfsRoot, route->interfaceName)));
  return {report, route->interfaceIndex, route->interfaceName, route->sourceIPv4};
}

} // namespace tidewell
