#pragma once

#include "base/Observers.h"
#include "base/Published.h"
#include "base/Scheduler.h"

#include <functional>
#include <memory>
#include <vector>

namespace tidewell {

/// Calls a function once after any number of changes that were made in one go, such as the six
/// writes of one sample. Main thread.
class ChangeCoalescer {
public:
  /// Borrows the queue.
  ChangeCoalescer(WorkQueue& main, std::function<void()> changed)
      : m_main(main), m_state(std::make_shared<State>(State{std::move(changed), false})) {}

  /// Takes every write of the value for a change.
  template <class T> void watch(Published<T>& value) {
    m_subscriptions.push_back(value.subscribe([this](const T&) { mark(); }));
  }

  /// Keeps a subscription that marks changes of another kind.
  void keep(Subscription subscription) { m_subscriptions.push_back(std::move(subscription)); }

  /// Notes a change; the function runs as a task of its own.
  void mark() {
    if (m_state->isMarked) {
      return;
    }
    m_state->isMarked = true;
    m_main.post([weak = std::weak_ptr<State>(m_state)] {
      if (const auto state = weak.lock()) {
        state->isMarked = false;
        state->changed();
      }
    });
  }

private:
  struct State {
    std::function<void()> changed;
    bool isMarked;
  };

  WorkQueue& m_main;
  std::shared_ptr<State> m_state;
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
