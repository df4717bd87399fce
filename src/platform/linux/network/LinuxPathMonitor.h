#pragma once

#include "platform/PathMonitor.h"
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

/// Watches the kernel's routes; needs no network manager.
///
/// The path is satisfied when the kernel has a route to the public internet through an interface
/// that is up and has its carrier. Its kind is that of this interface; a tunnel that takes the
/// traffic is of no kind. A path that lost and regained its carrier before it could be looked at
/// has not changed; one that moved to another interface or address has. Main thread.
class LinuxPathMonitor final : public PathMonitor {
public:
  /// Hears, on the main thread, whether the path is satisfied, before any watcher is told of it.
  using Observer = std::function<void(bool isSatisfied)>;

  /// Borrows the loop and the socket, and watches the network namespace of the calling thread.
  LinuxPathMonitor(EventLoop& loop, RouteSocket& socket, Observer observer = {},
                   std::string sysfsRoot = "/sys");
  ~LinuxPathMonitor() override;

  [[nodiscard]] std::unique_ptr<PathWatch> watch(WorkQueue& queue, Handler handler) override;

private:
  struct Watching;
  class Watch;

  /// What a report is made from. Everything but the report stays at home, yet a change of it is a
  /// change of the path, whose details have to be asked for anew.
  struct Path {
    PathReport report;
    int interfaceIndex = 0;
    std::string interfaceName;
    std::string sourceIPv4;

    friend bool operator==(const Path&, const Path&) = default;
  };

  void look();
  [[nodiscard]] Path pathOver(const std::optional<PublicRoute>& route) const;

  RouteSocket& m_socket;
  Observer m_observer;
  std::string m_sysfsRoot;
  std::optional<Path> m_path; // none before the first look
  std::vector<std::weak_ptr<Watching>> m_watching;
  RouteChanges m_changes; // last, so that it is silenced first
};

} // namespace tidewell
