#include "platform/linux/preferences/PreferencesFile.h"

#include "base/Utf8.h"
#include "platform/linux/files/FilePath.h"

#include <algorithm>
#include <utility>

namespace tidewell {
namespace {

// A writer that rewrites a file in place finishes this soon after its last step.
constexpr Seconds quietSpan = 0.05;
constexpr Seconds retrySpan = 60.0;
constexpr Seconds once = 0.0;

} // namespace

PreferencesFile::PreferencesFile(std::string path, WorkQueue& main, WatchDescriptor watch)
    : PreferencesStore(main), m_main(main), m_storage(std::move(path)),
      m_watcher(m_storage.path(), std::move(watch),
                [this](bool isFinished) { fileChanged(isFinished); }) {
  // If the directory is missing, the watcher waits for it. If the watcher fails, changes show
  // later.
  [[maybe_unused]] const auto error = makeDirectories(directoryOf(m_storage.path()));
  if (!m_watcher.arm()) {
    retryLater();
  }
  adopt(m_storage.read());
}

PreferencesFile::PreferencesFile(std::string path, EventLoop& loop)
    : PreferencesFile(std::move(path), loop,
                      [&loop](int descriptor, std::uint32_t events, EventLoop::FdHandler handler) {
                        return loop.watch(descriptor, events, std::move(handler));
                      }) {}

void PreferencesFile::set(std::string_view key, PreferenceValue value) {
  if (auto* const text = std::get_if<std::string>(&value)) {
    *text = validUtf8(*text);
  }
  const PreferenceValues change{{validUtf8(key), std::move(value)}};
  m_refused.insert_or_assign(change.begin()->first, change.begin()->second);
  adopt({Reading::Outcome::intact, values()});
  if (flush(m_refused)) {
    return;
  }
  if (m_refused.size() > 1) {
    flush(change); // an older value may be the one that the disk has no room for
  }
  retryLater();
}

void PreferencesFile::fileChanged(bool isFinished) {
  if (!m_watcher.arm()) {
    retryLater();
  }
  m_quiet.reset();
  if (isFinished) {
    Reading reading = m_storage.read();
    if (isComplete(reading)) {
      return adopt(std::move(reading));
    }
  }
  m_quiet = m_main.repeat(quietSpan, once, [this] { adopt(m_storage.read()); });
}

// Whether nothing suggests that the file is still being written.
bool PreferencesFile::isComplete(const Reading& reading) const {
  return reading.outcome == Reading::Outcome::intact &&
         std::ranges::all_of(values(), [&](const auto& entry) {
           return reading.values.contains(entry.first) || m_refused.contains(entry.first);
         });
}

// Writes the changes to the disk. Returns false if it refuses.
bool PreferencesFile::flush(const PreferenceValues& changes) {
  auto stored = m_storage.write(changes, values());
  if (!stored) {
    return false;
  }
  std::erase_if(m_refused, [&](const auto& entry) { return changes.contains(entry.first); });
  adopt({Reading::Outcome::intact, *std::move(stored)});
  return true;
}

// Publishes what is on the disk, and what is still to be written.
void PreferencesFile::adopt(Reading reading) {
  if (reading.outcome == Reading::Outcome::broken) {
    reading.values.insert(values().begin(), values().end()); // missing values stay as they were
  }
  for (const auto& [key, value] : m_refused) {
    reading.values.insert_or_assign(key, value);
  }
  replaceValues(std::move(reading.values));
}

void PreferencesFile::retryLater() {
  if (!m_retry) {
    m_retry = m_main.repeat(retrySpan, once, [this] { retry(); });
  }
}

void PreferencesFile::retry() {
  m_retry.reset();
  const bool isWatching = m_watcher.arm();
  adopt(m_storage.read()); // what changed while nothing was watched
  const bool isStored = m_refused.empty() || flush(m_refused);
  if (!isWatching || !isStored) {
    retryLater();
  }
}

} // namespace tidewell
