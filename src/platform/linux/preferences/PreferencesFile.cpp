#include "platform/linux/preferences/PreferencesFile.h"

#include "base/Utf8.h"
#include "platform/linux/files/FilePath.h"

#include <algorithm>
#include <utility>

namespace tidewell {
namespace {

// A writer that rewrites a file in place finishes this soon after its last step.
constexpr Seconds quietSpan = 0.05;
constexpr Seconds rewatchSpan = 60.0;
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
    watchLater();
  }
  adopt(m_storage.read());
}

PreferencesFile::PreferencesFile(std::string path, EventLoop& loop)
    : PreferencesFile(std::move(path), loop,
                      [&loop](int descriptor, std::uint32_t events, EventLoop::FdHandler handler) {
                        return loop.watch(descriptor, events, std::move(handler));
                      }) {}

std::error_code PreferencesFile::set(std::string_view key, PreferenceValue value) {
  if (auto* const text = std::get_if<std::string>(&value)) {
    *text = validUtf8(*text);
  }
  auto written = m_storage.write({{validUtf8(key), std::move(value)}}, values());
  if (!written.error) {
    adopt({Reading::Outcome::intact, std::move(written.values)});
  }
  return written.error;
}

void PreferencesFile::fileChanged(bool isFinished) {
  if (!m_watcher.arm()) {
    watchLater();
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
         std::ranges::all_of(
             values(), [&](const auto& entry) { return reading.values.contains(entry.first); });
}

// Publishes what is on the disk.
void PreferencesFile::adopt(Reading reading) {
  if (reading.outcome == Reading::Outcome::broken) {
    reading.values.insert(values().begin(), values().end()); // missing values stay as they were
  }
  replaceValues(std::move(reading.values));
}

void PreferencesFile::watchLater() {
  if (!m_rewatch) {
    m_rewatch = m_main.repeat(rewatchSpan, once, [this] {
      m_rewatch.reset();
      if (!m_watcher.arm()) {
        watchLater();
      }
      adopt(m_storage.read()); // what changed while nothing was watched
    });
  }
}

} // namespace tidewell
