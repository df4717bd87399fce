#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"
#include "platform/PreferencesStore.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// Delivers the changes of a store to its observers on the main queue, each change once, in order.
class PreferenceChanges {
public:
  explicit PreferenceChanges(WorkQueue& main);
  PreferenceChanges(const PreferenceChanges&) = delete;
  PreferenceChanges& operator=(const PreferenceChanges&) = delete;
  /// Drops undelivered changes.
  ~PreferenceChanges();

  /// Notifies the key's observers soon, in the order of the calls.
  void push(std::string key, std::optional<PreferenceValue> value);

  /// Registers an observer for changes pushed from now on.
  [[nodiscard]] Subscription observe(std::string_view key, PreferencesStore::Observer observer);

private:
  struct State;

  WorkQueue& m_main;
  std::shared_ptr<State> m_state;
};

} // namespace tidewell
