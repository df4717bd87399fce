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
/// Reading a value never touches the disk; writing one returns when it is on the disk. A value
/// that the disk refuses stays valid in this process. It is written again with the next write, and
/// once a minute.
class PreferencesFile final : public PreferencesStore {
public:
  /// Reads the file of this absolute path. Creates its directory if it is missing.
  PreferencesFile(std::string path, WorkQueue& main, WatchDescriptor watch);
  PreferencesFile(std::string path, EventLoop& loop);

  void set(std::string_view key, PreferenceValue value) override;

private:
  using Reading = PreferencesStorage::Reading;

  void fileChanged(bool isFinished);
  [[nodiscard]] bool isComplete(const Reading& reading) const;
  bool flush(const PreferenceValues& changes);
  void adopt(Reading reading);
  void retryLater();
  void retry();

  WorkQueue& m_main;
  PreferencesStorage m_storage;
  PreferenceValues m_refused; // not on the disk yet
  std::unique_ptr<Timer> m_quiet;
  std::unique_ptr<Timer> m_retry;
  FileWatcher m_watcher;
};

} // namespace tidewell
