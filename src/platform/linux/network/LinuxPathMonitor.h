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

/// Watches the kernel's routes without a network manager.
///
/// The path is satisfied if the kernel has a route to the public internet through an interface that
/// is up and has its carrier. Its kind is that of the interface; a tunnel has no kind. A path that
/// loses and regains its carrier between two looks has not changed. One that moves to another
/// interface or address has.
class LinuxPathMonitor final : public PathMonitor {
public:
  /// Called with whether the path is satisfied, before any watcher.
  using Observer = std::function<void(bool isSatisfied)>;

  /// Borrows the loop and the socket, and watches the network namespace of the calling thread.
  LinuxPathMonitor(EventLoop& loop, RouteSocket& socket, Observer observer = {},
                   std::string sysfsRoot = "/sys");
  ~LinuxPathMonitor() override;

  [[nodiscard]] std::unique_ptr<PathWatch> watch(WorkQueue& queue, Handler handler) override;

private:
  struct Watching;
  class Watch;

  /// A report and what it was made from. Watchers hear of every change, because the details of the
  /// connection then have to be fetched again.
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
  std::optional<Path> m_path; // absent before the first look
  std::vector<std::weak_ptr<Watching>> m_watching;
  RouteChanges m_changes; // last, so that it is destroyed first
};

} // namespace tidewell
