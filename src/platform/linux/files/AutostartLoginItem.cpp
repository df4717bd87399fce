#include "platform/linux/files/AutostartLoginItem.h"

#include "platform/linux/files/FilePath.h"
#include "platform/linux/files/FileReplacement.h"
#include "platform/linux/process/Keeper.h"

#include <cerrno>
#include <cstddef>
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
         // Disables the entry once the program is gone: uninstalling leaves the entry.
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
  const DirectoryLock lock(directory);
  if (lock.error()) {
    return description(directory, lock.error());
  }
  constexpr mode_t readableByAll = 0644;
  if (const auto error = replaceFile(m_entryPath, entryFor(m_programPath), readableByAll)) {
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

std::string stringValue(std::string_view text) {
  constexpr std::string_view special = "\\\n\t\r";
  constexpr std::string_view letters = "\\ntr";
  std::string result;
  for (const char character : text) {
    const std::size_t index = special.find(character);
    result += index == std::string_view::npos ? std::string{character}
                                              : std::string{'\\', letters[index]};
  }
  return result;
}

std::string execValue(std::string_view programPath) {
  constexpr std::string_view special = "\"`$\\";
  std::string argument = "\"";
  for (const char character : programPath) {
    if (special.find(character) != std::string_view::npos) {
      argument += '\\';
    } else if (character == '%') {
      argument += '%';
    }
    argument += character;
  }
  return stringValue(argument + '"');
}

} // namespace tidewell
