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

namespace tidewell {

/// Has a file descriptor watched on the main thread, like `EventLoop::watch`.
using WatchDescriptor = std::function<std::unique_ptr<FdWatch>(int descriptor, std::uint32_t events,
                                                               EventLoop::FdHandler handler)>;

/// Tells when the file of a path may have changed: rewritten, replaced, removed, made anew, its
/// mode changed, or a symbolic link on the way to it pointed elsewhere. Where directories are
/// missing it waits for them. Main thread.
class FileWatcher {
public:
  /// Hears of a change; `isFinished` when a writer has just closed or replaced the file, so that
  /// it holds all that it is meant to hold.
  using Observer = std::function<void(bool isFinished)>;

  /// Watches nothing until `arm`.
  FileWatcher(std::string path, WatchDescriptor watch, Observer observer);

  /// Finds out where the path leads now, and watches that. The owner calls it before it reads the
  /// file, at first and after each change, and some time later when it gives false: the kernel
  /// refused.
  [[nodiscard]] bool arm();

private:
  using NamesOfWatch = std::map<int, std::set<std::string>>; // which files of which directory

  bool open();
  bool add(NamesOfWatch& names, const std::string& path) const;
  void readEvents();

  std::string m_path;
  WatchDescriptor m_watchDescriptor;
  Observer m_observer;
  FileDescriptor m_inotify;
  NamesOfWatch m_names;
  std::unique_ptr<FdWatch> m_watch;
};

} // namespace tidewell
