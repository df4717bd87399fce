#include "platform/linux/preferences/PreferencesStorage.h"

#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/DirectoryLock.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/files/FileReading.h"
#include "platform/linux/preferences/PreferencesText.h"

#include <cerrno>
#include <cstddef>
#include <utility>

#include <sys/stat.h>

namespace tidewell {

namespace {

// Eleven short lines are expected.
constexpr std::size_t mostBytes = 1U << 20U;

constexpr std::string_view firstLine = "# Tidewell's preferences. Changes take effect at once.\n\n";

// The file that is replaced: where links lead, so that they stay, unless they lead to something
// that must not be replaced, such as a device.
std::string targetOf(const std::string& path) {
  const std::string target = linkChain(path).back();
  struct stat status {};
  if (::lstat(target.c_str(), &status) == 0) {
    return S_ISREG(status.st_mode) ? target : path;
  }
  return errno == ENOENT ? target : path;
}

// False when something of the text was lost on the way.
bool setAll(PreferencesText& text, const PreferenceValues& values) {
  bool isComplete = true;
  for (const auto& [key, value] : values) {
    isComplete = text.set(key, value) && isComplete;
  }
  return isComplete;
}

bool replace(const std::string& path, const std::string& contents, bool mustKeepAside) {
  constexpr mode_t forTheUserAlone = 0600;
  AtomicFile file(path, forTheUserAlone);
  return contents.size() <= mostBytes && !file.prepare(contents) &&
         !(mustKeepAside && keepAside(path)) && !file.commit();
}

} // namespace

PreferencesStorage::Reading PreferencesStorage::read() const {
  const FileReading file = readFile(m_path, mostBytes);
  switch (file.outcome) {
  case FileReading::Outcome::absent:
    return {Reading::Outcome::absent, {}};
  case FileReading::Outcome::unreadable:
    return {Reading::Outcome::unreadable, {}};
  case FileReading::Outcome::read:
    break;
  }
  const PreferencesText text(file.contents);
  return {text.isIntact() ? Reading::Outcome::intact : Reading::Outcome::broken, text.values()};
}

std::optional<PreferenceValues> PreferencesStorage::write(const PreferenceValues& changes,
                                                          const PreferenceValues& known) const {
  const std::string directory = directoryOf(m_path);
  if (makeDirectories(directory)) {
    return std::nullopt;
  }
  const DirectoryLock lock(directory);
  if (lock.error()) {
    return std::nullopt;
  }
  using Outcome = FileReading::Outcome;
  const FileReading file = readFile(m_path, mostBytes);
  PreferencesText text(file.outcome == Outcome::read ? file.contents : firstLine);
  bool mustKeepAside = file.outcome == Outcome::unreadable || !text.isIntact();
  if (mustKeepAside) {
    PreferenceValues missing = known;
    std::erase_if(missing, [&](const auto& entry) { return text.values().contains(entry.first); });
    setAll(text, missing);
  }
  mustKeepAside = !setAll(text, changes) || mustKeepAside;
  const bool isUnchanged = file.outcome == Outcome::read && text.text() == file.contents;
  if (!isUnchanged && !replace(targetOf(m_path), text.text(), mustKeepAside)) {
    return std::nullopt;
  }
  return text.values();
}

} // namespace tidewell
