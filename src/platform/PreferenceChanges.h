#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"
#include "platform/PreferencesStore.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// Carries the changes of a store from the threads that make them to the observers on the main
/// thread, each change once, in order.
class PreferenceChanges {
public:
  explicit PreferenceChanges(WorkQueue& main);
  PreferenceChanges(const PreferenceChanges&) = delete;
  PreferenceChanges& operator=(const PreferenceChanges&) = delete;
  /// Drops what was not delivered. Main thread.
  ~PreferenceChanges();

  /// Tells the observers of the key soon. Any thread; the order of the calls is the order of the
  /// notifications, so the caller holds whatever orders its changes.
  void push(std::string key, std::optional<PreferenceValue> value);

  /// Registers an observer, which hears what is pushed from now on. Main thread.
  [[nodiscard]] Subscription observe(std::string_view key, PreferencesStore::Observer observer);

private:
  struct State;

  WorkQueue& m_main;
  std::shared_ptr<State> m_state;
};

} // namespace tidewell
