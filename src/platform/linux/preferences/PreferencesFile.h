#pragma once

#include "platform/PreferencesStore.h"
#include "platform/linux/files/FileWatcher.h"
#include "platform/linux/preferences/PreferencesStorage.h"

#include <memory>
#include <string>
#include <string_view>

namespace tidewell {

/// The preferences in a file of the user's, which other programs and editors may change too.
///
/// Reading a value never touches the disk; writing one returns when it is on the disk, or when the
/// disk has refused it.
class PreferencesFile final : public PreferencesStore {
public:
  /// Reads the file of this absolute path. Creates its directory if it is missing.
  PreferencesFile(std::string path, WorkQueue& main, WatchDescriptor watch);
  PreferencesFile(std::string path, EventLoop& loop);

  std::error_code set(std::string_view key, PreferenceValue value) override;

private:
  using Reading = PreferencesStorage::Reading;

  void fileChanged(bool isFinished);
  [[nodiscard]] bool isComplete(const Reading& reading) const;
  void adopt(Reading reading);
  void watchLater();

  WorkQueue& m_main;
  PreferencesStorage m_storage;
  std::unique_ptr<Timer> m_quiet;
  std::unique_ptr<Timer> m_rewatch;
  FileWatcher m_watcher;
};

} // namespace tidewell
