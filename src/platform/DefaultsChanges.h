#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"
#include "platform/DefaultsStore.h"

#include <memory>
#include <optional>
#include <string>

namespace tidewell {

/// Carries the changes of a store from the threads that make them to the observers on the main
/// thread, each change once, in order.
class DefaultsChanges {
public:
  explicit DefaultsChanges(WorkQueue& main);
  DefaultsChanges(const DefaultsChanges&) = delete;
  DefaultsChanges& operator=(const DefaultsChanges&) = delete;
  /// Drops what was not delivered. Main thread.
  ~DefaultsChanges();

  /// Tells the observers of the key soon. Any thread; the order of the calls is the order of the
  /// notifications, so the caller holds whatever orders its changes.
  void push(std::string key, std::optional<DefaultsValue> value);

  /// Registers an observer, which hears what is pushed from now on. Main thread.
  [[nodiscard]] Subscription observe(const std::string& key, DefaultsStore::Observer observer);

private:
  struct State;

  WorkQueue& m_main;
  std::shared_ptr<State> m_state;
};

} // namespace tidewell
