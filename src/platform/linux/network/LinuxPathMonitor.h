#pragma once

#include "platform/PathMonitor.h"
#include "platform/linux/network/DnsChanges.h"
#include "platform/linux/network/DnsServers.h"
#include "platform/linux/network/PathReporter.h"
#include "platform/linux/network/RouteChanges.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

class EventLoop;
class RouteSocket;
struct PublicRoute;

/// Watches the kernel's routes without a network manager.
///
/// The path is satisfied if the kernel has a route to the public internet through an interface that
/// is up and has its carrier. Its kind is that of the interface; a tunnel has no kind. A path that
/// loses and regains its carrier between two looks has not changed. One that moves to another
/// interface, address, gateway or DNS server has. `PathReporter` decides when it is reported.
class LinuxPathMonitor final : public PathMonitor {
public:
  /// Called with whether the path is satisfied, before any watcher.
  using Observer = std::function<void(bool isSatisfied)>;

  /// Borrows the loop and the socket, and watches the network namespace of the calling thread.
  LinuxPathMonitor(EventLoop& loop, RouteSocket& socket, Observer observer = {},
                   std::string sysfsRoot = "/sys", const DnsPlaces& dnsPlaces = {});
  ~LinuxPathMonitor() override;

  [[nodiscard]] std::unique_ptr<PathWatch> watch(WorkQueue& queue, Handler handler) override;

  /// DNS servers that no file names have changed.
  void dnsServersChanged();
  /// The machine is about to sleep, or awake again.
  void setSleeping(bool isSleeping) { m_reporter.setSleeping(isSleeping); }
  /// A lookup of the public address has ended.
  void lookedUp(bool hasAddress) { m_reporter.lookedUp(hasAddress); }

private:
  struct Watching;
  class Watch;

  void look();
  void report(const PathReport& report);
  [[nodiscard]] ObservedPath pathOver(std::optional<PublicRoute> route) const;

  RouteSocket& m_socket;
  Observer m_observer;
  std::string m_sysfsRoot;
  DnsPlaces m_dnsPlaces;
  int m_dnsChanges = 0; // that no file shows
  std::vector<std::weak_ptr<Watching>> m_watching;
  PathReporter m_reporter;
  // Last, so that they are destroyed first.
  RouteChanges m_routeChanges;
  DnsChanges m_fileChanges;
};

} // namespace tidewell
