#include "platform/linux/preferences/PreferencesStorage.h"

#include "platform/linux/files/FilePath.h"
#include "platform/linux/files/FileReading.h"
#include "platform/linux/files/FileReplacement.h"
#include "platform/linux/preferences/PreferencesText.h"

#include <cerrno>
#include <cstddef>
#include <string_view>

#include <sys/stat.h>

namespace tidewell {
namespace {

// Eleven short lines are expected.
constexpr std::size_t largestPreferences = 1U << 20U;

constexpr std::string_view firstLine = "# Tidewell's preferences. Changes take effect at once.\n\n";

// The file to replace. Symbolic links are followed and stay, unless they lead to something that
// must not be replaced, such as a device.
std::string targetOf(const std::string& path) {
  const std::string target = linkChain(path).back();
  struct stat status {};
  if (::lstat(target.c_str(), &status) == 0) {
    return S_ISREG(status.st_mode) ? target : path;
  }
  return errno == ENOENT ? target : path;
}

} // namespace

PreferencesStorage::Reading PreferencesStorage::read() const {
  const FileReading file = readFile(m_path, largestPreferences);
  if (file.outcome != FileReading::Outcome::read) {
    const bool isAbsent = file.outcome == FileReading::Outcome::absent;
    return {isAbsent ? Reading::Outcome::absent : Reading::Outcome::broken, {}};
  }
  const PreferencesText text(file.contents);
  return {text.isIntact() ? Reading::Outcome::intact : Reading::Outcome::broken, text.values()};
}

PreferencesStorage::Writing PreferencesStorage::write(const PreferenceValues& changes,
                                                      const PreferenceValues& known) const {
  const DirectoryLock lock(directoryOf(m_path));
  if (lock.error()) {
    return {lock.error(), {}};
  }
  using Outcome = FileReading::Outcome;
  const FileReading file = readFile(m_path, largestPreferences);
  PreferencesText text(file.outcome == Outcome::read ? file.contents : firstLine);
  const bool isBroken = file.outcome == Outcome::unreadable || !text.isIntact();
  for (const auto& [key, value] : isBroken ? known : PreferenceValues{}) {
    if (!text.values().contains(key)) {
      text.set(key, value);
    }
  }
  for (const auto& [key, value] : changes) {
    text.set(key, value);
  }
  if (file.outcome == Outcome::read && text.text() == file.contents) {
    return {{}, text.values()};
  }
  if (text.text().size() > largestPreferences) {
    return {std::make_error_code(std::errc::file_too_large), {}};
  }
  constexpr mode_t forTheUserAlone = 0600;
  const OldFile old = isBroken ? OldFile::keptAside : OldFile::removed;
  return {replaceFile(targetOf(m_path), text.text(), forTheUserAlone, old), text.values()};
}

} // namespace tidewell
