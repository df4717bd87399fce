#pragma once

#include "base/Observers.h"

#include <functional>
#include <memory>
#include <utility>

namespace tidewell {

/// A value that notifies its observers of every write, even of an equal value.
///
/// Written and observed on the main queue. During a notification an observer may end itself or
/// others, subscribe new ones, write the value again or destroy its owner. Observers notified later
/// in the same round then get the newest value, never an older one after a newer one.
template <class T> class Published {
public:
  explicit Published(T initial = T{}) : m_state(std::make_shared<State>(std::move(initial))) {}
  Published(Published&&) = delete;

  [[nodiscard]] const T& get() const { return m_state->value; }

  /// Stores the value and notifies every observer.
  void set(T value) {
    m_state->value = std::move(value);
    notify();
  }

  /// Changes the value in place and notifies once.
  template <class F> void mutate(F&& change) {
    std::forward<F>(change)(m_state->value);
    notify();
  }

  /// Registers an observer. It is called with the current value at once and then at every write.
  [[nodiscard]] Subscription subscribe(std::function<void(const T&)> observer) {
    const std::shared_ptr<State> state = m_state;
    auto subscription = state->observers.add(
        [source = std::weak_ptr<State>(state), observer](const State& current) {
          if (const auto alive = source.lock()) {
            observer(current.value);
          }
        });
    observer(state->value);
    return subscription;
  }

private:
  struct State {
    explicit State(T initial) : value(std::move(initial)) {}

    T value;
    Observers<const State&> observers;
  };

  void notify() {
    const std::shared_ptr<State> state = m_state;
    state->observers.notify(*state);
  }

  std::shared_ptr<State> m_state;
};

} // namespace tidewell
