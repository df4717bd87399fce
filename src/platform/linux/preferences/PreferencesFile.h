#pragma once

#include "platform/PreferenceChanges.h"
#include "platform/PreferencesStore.h"
#include "platform/linux/files/FileWatcher.h"
#include "platform/linux/preferences/PreferencesStorage.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The preferences in a TOML file of the user's, which other programs and editors may change too.
///
/// Reading a value never touches the disk. Writing one ends when the disk has it; one that the
/// disk refuses is kept for this process's readers and tried again, at the next write and once a
/// minute. Constructed and destroyed on the main thread, `value` and `set` on any.
class PreferencesFile final : public PreferencesStore {
public:
  /// Reads the file of this absolute path; makes its directory when it is missing.
  PreferencesFile(std::string path, WorkQueue& main, WatchDescriptor watch);
  PreferencesFile(std::string path, EventLoop& loop);
  ~PreferencesFile() override;

  [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const override;
  void set(std::string_view key, PreferenceValue value) override;
  [[nodiscard]] Subscription observe(std::string_view key, Observer observer) override;

private:
  enum class Patience { none, untilQuiet };

  void fileChanged(bool isFinished);
  void read(Patience patience);
  bool isComplete(const PreferencesStorage::Reading& reading) const;
  bool flush(const PreferenceValues& changes);
  void adopt(PreferenceValues stored);
  void retryLater();
  void retry();

  WorkQueue& m_main;
  PreferenceChanges m_changes;

  std::mutex m_fileMutex;       // taken before m_mutex
  PreferencesStorage m_storage; // guarded by m_fileMutex

  mutable std::mutex m_mutex;
  PreferenceValues m_values;  // what readers see; guarded by m_mutex
  PreferenceValues m_refused; // of these, what the disk does not have; guarded by m_mutex

  std::unique_ptr<Timer> m_quiet; // main thread, as all below
  std::unique_ptr<Timer> m_retry;
  FileWatcher m_watcher;
  std::shared_ptr<PreferencesFile*> m_self; // expires first
};

} // namespace tidewell
