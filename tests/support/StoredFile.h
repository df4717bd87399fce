#pragma once

#include "platform/linux/preferences/PreferencesFile.h"
#include "support/TemporaryDirectory.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/epoll.h>

namespace tidewell::test {

inline const PreferenceValue one{std::int64_t{1}};
inline const PreferenceValue two{std::int64_t{2}};

/// A preferences file on the disk and a store on it in virtual time. The kernel's events about the
/// file are read when the test asks for it.
class StoredFile : public testing::Test {
protected:
  using Heard = std::vector<std::pair<std::string, std::optional<PreferenceValue>>>;

  /// Creates the store, as a start of the program does.
  void start() {
    store.reset();
    store = std::make_unique<PreferencesFile>(
        path.string(), scheduler.main(),
        [this](int, std::uint32_t, EventLoop::FdHandler handler) -> std::unique_ptr<FdWatch> {
          if (isWatchRefused) {
            return nullptr;
          }
          readEvents = std::move(handler);
          return std::make_unique<Watch>();
        });
    heard.clear();
    subscriptions.clear();
    for (const char* key : {"a", "b", "refreshInterval"}) {
      subscriptions.push_back(
          store->observe(key, [this, key](const auto& value) { heard.emplace_back(key, value); }));
    }
  }

  /// Reads the events so far.
  void hearEvents() {
    readEvents(EPOLLIN);
    scheduler.settle();
  }

  /// Advances the time until the file counts as quiet.
  void becomeQuiet() { scheduler.advance(0.06); }

  void write(std::string_view contents) {
    std::filesystem::create_directories(path.parent_path());
    writeInPlace(path, contents);
  }
  [[nodiscard]] std::string contents() const { return contentsOf(path); }
  [[nodiscard]] std::vector<std::filesystem::path> keptAside() const {
    return filesNamed(path.parent_path(), ".broken-");
  }

  TemporaryDirectory directory;
  std::filesystem::path path = directory / "config/tidewell/preferences.toml";
  VirtualScheduler scheduler;
  std::unique_ptr<PreferencesFile> store;
  EventLoop::FdHandler readEvents;
  bool isWatchRefused = false;
  Heard heard;
  std::vector<Subscription> subscriptions;

private:
  class Watch final : public FdWatch {
    void setEvents(std::uint32_t) override {}
  };
};

} // namespace tidewell::test
