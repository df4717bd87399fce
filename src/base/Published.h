#pragma once

#include "base/Observers.h"

#include <functional>
#include <memory>
#include <utility>

namespace tidewell {

/// A value that tells its observers about every write, also when the new value equals the old one.
///
/// Written and observed on the main queue. An observer may end itself or others, subscribe new
/// ones, write the value again or destroy its owner while it is being notified; whoever is notified
/// later in the same round then hears the newest value, never an older one after a newer one.
template <class T> class Published {
public:
  explicit Published(T initial = T{}) : m_state(std::make_shared<State>(std::move(initial))) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;
  ~Published() = default;

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

  /// Registers an observer, which hears the current value at once and then every write.
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
