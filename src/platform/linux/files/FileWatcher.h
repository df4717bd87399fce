#pragma once

#include "base/Scheduler.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace tidewell {

/// Watches a file descriptor, like `EventLoop::watch`.
using WatchDescriptor = std::function<std::unique_ptr<FdWatch>(int descriptor, std::uint32_t events,
                                                               EventLoop::FdHandler handler)>;

/// Reports when the file of one of the paths may have changed: rewritten, replaced, removed,
/// created, its mode changed, or a symbolic link on the way to it changed. Waits for missing
/// directories.
class FileWatcher {
public:
  /// Called after a change. `isFinished` if a writer has just closed or replaced the file, so that
  /// it is complete.
  using Observer = std::function<void(bool isFinished)>;

  /// Watches nothing before `arm`.
  FileWatcher(std::string path, WatchDescriptor watch, Observer observer);
  FileWatcher(std::vector<std::string> paths, WatchDescriptor watch, Observer observer);

  /// Watches what the paths lead to now. The owner calls it before reading the file, at first and
  /// after each change. Returns false if the kernel refused; the owner then tries again later.
  [[nodiscard]] bool arm();

private:
  using NamesOfWatch = std::map<int, std::set<std::string>>; // which files of which directory

  bool open();
  bool add(NamesOfWatch& names, const std::string& path) const;
  void readEvents();

  std::vector<std::string> m_paths;
  WatchDescriptor m_watchDescriptor;
  Observer m_observer;
  FileDescriptor m_inotify;
  NamesOfWatch m_names;
  std::unique_ptr<FdWatch> m_watch;
};

} // namespace tidewell
