#include "platform/linux/files/AutostartLoginItem.h"

#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/DesktopEntry.h"
#include "platform/linux/files/DirectoryLock.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/process/Keeper.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace tidewell {

namespace {

std::string entryFor(const std::string& programPath) {
  return "[Desktop Entry]\n"
         "Type=Application\n"
         "Name=Tidewell\n"
         "Comment=Network speed in the panel\n"
         "Icon=com.halden.Tidewell\n"
         "Exec=" +
         execValue(programPath) + " " + std::string(keepRunningOption) +
         "\n"
         // Without the program the entry means nothing: it may be left when the program is removed.
         "TryExec=" +
         stringValue(programPath) +
         "\n"
         "Terminal=false\n"
         "StartupNotify=false\n";
}

std::string description(const std::string& path, const std::error_code& error) {
  return path + ": " + error.message();
}

} // namespace

AutostartLoginItem::AutostartLoginItem(const std::string& configurationDirectory,
                                       std::string programPath)
    : m_entryPath(configurationDirectory + "/autostart/com.halden.Tidewell.desktop"),
      m_programPath(std::move(programPath)) {}

std::optional<std::string> AutostartLoginItem::registerItem() {
  if (!m_programPath.starts_with('/')) {
    return "the program's own path is unknown";
  }
  const std::string directory = directoryOf(m_entryPath);
  if (const auto error = makeDirectories(directory)) {
    return description(directory, error);
  }
  const DirectoryLock lock(directory);
  if (lock.error()) {
    return description(directory, lock.error());
  }
  constexpr mode_t readableByAll = 0644;
  AtomicFile file(m_entryPath, readableByAll);
  if (const auto error = file.prepare(entryFor(m_programPath))) {
    return description(m_entryPath, error);
  }
  if (const auto error = file.commit()) {
    return description(m_entryPath, error);
  }
  return std::nullopt;
}

std::optional<std::string> AutostartLoginItem::unregisterItem() {
  if (::unlink(m_entryPath.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
    return description(m_entryPath, lastError());
  }
  return std::nullopt;
}

std::string runningProgram() {
  constexpr std::string_view deletedMark = " (deleted)"; // proc_pid_exe(5)
  std::array<char, PATH_MAX> buffer{};
  const ssize_t size = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
  std::string path(buffer.data(), static_cast<std::size_t>(size > 0 ? size : 0));
  if (path.ends_with(deletedMark) && ::access(path.c_str(), F_OK) != 0) {
    path.resize(path.size() - deletedMark.size());
  }
  return path;
}

} // namespace tidewell
