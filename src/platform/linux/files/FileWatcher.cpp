#include "platform/linux/files/FileWatcher.h"

#include "platform/linux/files/FilePath.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <utility>

#include <sys/epoll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace tidewell {
namespace {

constexpr std::uint32_t finishing = IN_CLOSE_WRITE | IN_MOVED_TO;
constexpr std::uint32_t watched = finishing | IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE |
                                  IN_MOVED_FROM | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

bool isDirectory(const std::string& path) { return ::access((path + "/.").c_str(), F_OK) == 0; }

} // namespace

FileWatcher::FileWatcher(std::string path, WatchDescriptor watch, Observer observer)
    : FileWatcher(std::vector{std::move(path)}, std::move(watch), std::move(observer)) {}

FileWatcher::FileWatcher(std::vector<std::string> paths, WatchDescriptor watch, Observer observer)
    : m_paths(std::move(paths)), m_watchDescriptor(std::move(watch)),
      m_observer(std::move(observer)) {}

bool FileWatcher::arm() {
  if (!open()) {
    return false;
  }
  NamesOfWatch names;
  bool succeeded = true;
  for (const std::string& path : m_paths) {
    for (const std::string& step : linkChain(path)) {
      succeeded = add(names, step) && succeeded;
    }
  }
  for (const auto& [watch, unused] : m_names) {
    if (!names.contains(watch)) {
      ::inotify_rm_watch(m_inotify.get(), watch);
    }
  }
  m_names = std::move(names);
  return succeeded;
}

bool FileWatcher::open() {
  if (m_watch == nullptr) {
    m_inotify = FileDescriptor(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    if (m_inotify.isOpen()) {
      m_watch =
          m_watchDescriptor(m_inotify.get(), EPOLLIN, [this](std::uint32_t) { readEvents(); });
    }
  }
  return m_watch != nullptr;
}

// Watches the directory of the path, or the nearest existing one above it.
bool FileWatcher::add(NamesOfWatch& names, const std::string& path) const {
  constexpr int attempts = 64; // directories come and go while we look
  std::string child = path;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const std::string directory = directoryOf(child);
    const int watch = ::inotify_add_watch(m_inotify.get(), directory.c_str(), watched);
    if (watch >= 0) {
      names[watch].insert(nameOf(child));
      if (child == path || !isDirectory(child)) {
        return true;
      }
      child = path;
    } else if ((errno == ENOENT || errno == ENOTDIR) && directory != child) {
      child = directory;
    } else {
      return false;
    }
  }
  return false;
}

void FileWatcher::readEvents() {
  bool isRelevant = false;
  bool isFinished = false;
  alignas(inotify_event) std::array<char, 4096> buffer{};
  ssize_t size = 0;
  while ((size = ::read(m_inotify.get(), buffer.data(), buffer.size())) > 0) {
    for (std::size_t offset = 0; offset < static_cast<std::size_t>(size);) {
      inotify_event event{};
      std::memcpy(&event, buffer.data() + offset, sizeof event);
      const char* const name = buffer.data() + offset + sizeof event;
      offset += sizeof event + event.len;
      const auto found = m_names.find(event.wd);
      const bool concernsUs =
          found != m_names.end() && (event.len == 0 || found->second.contains(name));
      if (concernsUs || (event.mask & IN_Q_OVERFLOW) != 0) {
        isRelevant = true;
        isFinished = (event.mask & finishing) != 0;
      }
    }
  }
  if (isRelevant) {
    m_observer(isFinished);
  }
}

} // namespace tidewell
