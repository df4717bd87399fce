#include "platform/linux/preferences/PreferencesFile.h"

#include "platform/linux/files/FilePath.h"
#include "platform/linux/preferences/TomlText.h"

#include <algorithm>
#include <utility>

namespace tidewell {

namespace {

// A writer that rewrites a file in place is done within as long after its last step.
constexpr Seconds quietSpan = 0.05;
constexpr Seconds retrySpan = 60.0;
constexpr Seconds once = 0.0;

PreferenceValue storable(PreferenceValue value) {
  if (auto* text = std::get_if<std::string>(&value)) {
    *text = validUtf8(*text);
  }
  return value;
}

} // namespace

PreferencesFile::PreferencesFile(std::string path, WorkQueue& main, WatchDescriptor watch)
    : m_main(main), m_changes(main), m_storage(std::move(path)),
      m_watcher(m_storage.path(), std::move(watch),
                [this](bool isFinished) { fileChanged(isFinished); }),
      m_self(std::make_shared<PreferencesFile*>(this)) {
  // Without the directory the watcher waits for it, and without the watcher changes show later.
  [[maybe_unused]] const auto error = makeDirectories(directoryOf(m_storage.path()));
  if (!m_watcher.arm()) {
    retryLater();
  }
  read(Patience::none);
}

PreferencesFile::PreferencesFile(std::string path, EventLoop& loop)
    : PreferencesFile(std::move(path), loop,
                      [&loop](int descriptor, std::uint32_t events, EventLoop::FdHandler handler) {
                        return loop.watch(descriptor, events, std::move(handler));
                      }) {}

PreferencesFile::~PreferencesFile() = default;

std::optional<PreferenceValue> PreferencesFile::value(std::string_view key) const {
  const std::scoped_lock lock(m_mutex);
  const auto found = m_values.find(key);
  return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

void PreferencesFile::set(std::string_view key, PreferenceValue value) {
  const PreferenceValues change{{validUtf8(key), storable(std::move(value))}};
  const std::scoped_lock fileLock(m_fileMutex);
  PreferenceValues refused;
  {
    const std::scoped_lock lock(m_mutex);
    for (const auto& [name, stored] : change) {
      m_refused.insert_or_assign(name, stored);
    }
    PreferenceValues values = m_values;
    adopt(std::move(values));
    refused = m_refused;
  }
  if (flush(refused)) {
    return;
  }
  if (refused.size() > 1) {
    flush(change); // an older value may be what the disk has no room for
  }
  m_main.post([self = std::weak_ptr(m_self)] {
    if (const auto alive = self.lock()) {
      (*alive)->retryLater();
    }
  });
}

Subscription PreferencesFile::observe(std::string_view key, Observer observer) {
  return m_changes.observe(key, std::move(observer));
}

void PreferencesFile::fileChanged(bool isFinished) {
  if (!m_watcher.arm()) {
    retryLater();
  }
  m_quiet.reset();
  if (isFinished) {
    read(Patience::untilQuiet);
  } else {
    m_quiet = m_main.repeat(quietSpan, once, [this] { read(Patience::none); });
  }
}

void PreferencesFile::read(Patience patience) {
  const std::scoped_lock fileLock(m_fileMutex);
  PreferencesStorage::Reading reading = m_storage.read();
  const std::scoped_lock lock(m_mutex);
  if (patience == Patience::untilQuiet && !isComplete(reading)) {
    m_quiet = m_main.repeat(quietSpan, once, [this] { read(Patience::none); });
    return;
  }
  using Outcome = PreferencesStorage::Reading::Outcome;
  if (reading.outcome == Outcome::broken || reading.outcome == Outcome::unreadable) {
    reading.values.insert(m_values.begin(), m_values.end()); // what is not there stays as it was
  }
  adopt(std::move(reading.values));
}

// Whether nothing hints at a file that is still being written.
bool PreferencesFile::isComplete(const PreferencesStorage::Reading& reading) const {
  return reading.outcome == PreferencesStorage::Reading::Outcome::intact &&
         std::ranges::all_of(m_values, [&](const auto& entry) {
           return reading.values.contains(entry.first) || m_refused.contains(entry.first);
         });
}

// With m_fileMutex held. Gives the disk these values; false when it refuses.
bool PreferencesFile::flush(const PreferenceValues& changes) {
  PreferenceValues known;
  {
    const std::scoped_lock lock(m_mutex);
    known = m_values;
  }
  auto stored = m_storage.write(changes, known);
  if (!stored) {
    return false;
  }
  const std::scoped_lock lock(m_mutex);
  for (const auto& [key, value] : changes) {
    m_refused.erase(key);
  }
  adopt(*std::move(stored));
  return true;
}

// With m_mutex held. Makes what is stored, and what should be, what readers see.
void PreferencesFile::adopt(PreferenceValues stored) {
  for (const auto& [key, value] : m_refused) {
    stored.insert_or_assign(key, value);
  }
  for (const auto& [key, value] : m_values) {
    if (!stored.contains(key)) {
      m_changes.push(key, std::nullopt);
    }
  }
  for (const auto& [key, value] : stored) {
    const auto old = m_values.find(key);
    if (old == m_values.end() || !isSame(old->second, value)) {
      m_changes.push(key, value);
    }
  }
  m_values = std::move(stored);
}

void PreferencesFile::retryLater() {
  if (!m_retry) {
    m_retry = m_main.repeat(retrySpan, once, [this] { retry(); });
  }
}

void PreferencesFile::retry() {
  m_retry.reset();
  bool succeeded = m_watcher.arm();
  read(Patience::none); // what nobody told while nothing was watched
  {
    const std::scoped_lock fileLock(m_fileMutex);
    PreferenceValues refused;
    {
      const std::scoped_lock lock(m_mutex);
      refused = m_refused;
    }
    succeeded = (refused.empty() || flush(refused)) && succeeded;
  }
  if (!succeeded) {
    retryLater();
  }
}

} // namespace tidewell
