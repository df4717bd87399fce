#pragma once

#include "base/Observers.h"

#include <atomic>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace tidewell {

/// A value that tells its observers about every write, also when the new value equals the old one.
///
/// Written and observed on the main thread. A number may be read from any thread; other types on
/// the main thread only. An observer may end itself or others, subscribe new ones, write the value
/// again or destroy its owner while it is being notified; whoever is notified later in the same
/// round then hears the newest value, never an older one after a newer one.
template <class T> class Published {
public:
  explicit Published(T initial = T{}) : m_state(std::make_shared<State>(std::move(initial))) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;
  ~Published() = default;

  /// The current value: a copy of a number, a reference to anything else.
  [[nodiscard]] decltype(auto) get() const { return m_state->read(); }

  /// Stores the value and notifies every observer.
  void set(T value) {
    m_state->write(std::move(value));
    notify();
  }

  /// Changes the value in place and notifies once. Not for numbers, which have `set`.
  template <class F> void mutate(F&& change) {
    static_assert(!isNumber);
    std::forward<F>(change)(m_state->value);
    notify();
  }

  /// Registers an observer, which hears the current value at once and then every write.
  [[nodiscard]] Subscription subscribe(std::function<void(const T&)> observer) {
    const std::shared_ptr<State> state = m_state;
    auto subscription = state->observers.add(
        [source = std::weak_ptr<State>(state), observer](const State& current) {
          if (const auto alive = source.lock()) {
            observer(current.read());
          }
        });
    observer(state->read());
    return subscription;
  }

private:
  static constexpr bool isNumber = std::is_arithmetic_v<T>;

  struct State {
    explicit State(T initial) : value(std::move(initial)) {}

    [[nodiscard]] decltype(auto) read() const {
      if constexpr (isNumber) {
        return value.load(std::memory_order_relaxed);
      } else {
        return static_cast<const T&>(value);
      }
    }
    void write(T next) {
      if constexpr (isNumber) {
        value.store(next, std::memory_order_relaxed);
      } else {
        value = std::move(next);
      }
    }

    std::conditional_t<isNumber, std::atomic<T>, T> value;
    Observers<const State&> observers;
  };

  void notify() {
    const std::shared_ptr<State> state = m_state;
    state->observers.notify(*state);
  }

  std::shared_ptr<State> m_state;
};

} // namespace tidewell
