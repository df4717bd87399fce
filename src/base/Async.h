#pragma once

#include <coroutine>
#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

namespace tidewell {

// NOLINTBEGIN(readability-convert-member-functions-to-static, modernize-use-nodiscard): the
// compiler calls these members on objects.

template <class T> class Async;

/// The common part of the promises of `Async`.
class AsyncPromise {
public:
  struct FinalAwaiter {
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    template <class Promise>
    [[nodiscard]] std::coroutine_handle<>
    await_suspend(std::coroutine_handle<Promise> ended) const noexcept {
      return ended.promise().leave();
    }
    void await_resume() const noexcept {}
  };

  [[nodiscard]] std::suspend_always initial_suspend() const noexcept { return {}; }
  [[nodiscard]] FinalAwaiter final_suspend() const noexcept { return {}; }
  /// Propagates to the resumer. The program handles no exception but std::bad_alloc, and that where
  /// it occurs.
  void unhandled_exception() const { throw; }

  void resumeAfterwards(std::coroutine_handle<> waiter) { m_waiter = waiter; }
  void callAfterwards(std::function<void()> finished) { m_finished = std::move(finished); }

private:
  [[nodiscard]] std::coroutine_handle<> leave() const {
    if (m_finished) {
      m_finished();
    }
    return m_waiter;
  }

  std::coroutine_handle<> m_waiter = std::noop_coroutine();
  std::function<void()> m_finished;
};

template <class T> class AsyncValuePromise : public AsyncPromise {
public:
  void return_value(T value) { m_value.emplace(std::move(value)); }
  [[nodiscard]] T take() { return std::move(*m_value); }

private:
  std::optional<T> m_value;
};

template <> class AsyncValuePromise<void> : public AsyncPromise {
public:
  void return_void() const {}
};

/// A coroutine that returns a T. It begins when awaited or started. Destroying this object ends it
/// where it waits.
///
/// Parameters are copied into the coroutine's frame; references and `this` are not. Take values, or
/// let the owner of what you refer to own the coroutine too. A lambda that is a coroutine must not
/// capture anything.
template <class T = void> class [[nodiscard]] Async {
public:
  struct promise_type : AsyncValuePromise<T> {
    [[nodiscard]] Async get_return_object() {
      return Async(std::coroutine_handle<promise_type>::from_promise(*this));
    }
  };

  /// A coroutine that has finished.
  Async() = default;
  Async(Async&& other) noexcept : m_frame(std::exchange(other.m_frame, {})) {}
  Async& operator=(Async&& other) noexcept {
    std::swap(m_frame, other.m_frame);
    return *this;
  }
  ~Async() {
    if (m_frame) {
      m_frame.destroy();
    }
  }

  [[nodiscard]] bool isDone() const { return !m_frame || m_frame.done(); }

  /// Runs until the first wait. `finished` is called at the end, before the frame is destroyed.
  void start(std::function<void()> finished) {
    m_frame.promise().callAfterwards(std::move(finished));
    m_frame.resume();
  }

  [[nodiscard]] auto operator co_await() && noexcept { return Awaiter{m_frame}; }

private:
  struct Awaiter {
    [[nodiscard]] bool await_ready() const noexcept { return !frame; }
    [[nodiscard]] std::coroutine_handle<> await_suspend(std::coroutine_handle<> waiter) const {
      frame.promise().resumeAfterwards(waiter);
      return frame;
    }
    T await_resume() const {
      if constexpr (!std::is_void_v<T>) {
        return frame.promise().take();
      }
    }

    std::coroutine_handle<promise_type> frame;
  };

  explicit Async(std::coroutine_handle<promise_type> frame) : m_frame(frame) {}

  std::coroutine_handle<promise_type> m_frame;
};

/// An event that at most one coroutine awaits at a time.
class Waiter {
public:
  Waiter() = default;
  Waiter(Waiter&&) = delete;

  [[nodiscard]] bool await_ready() const noexcept { return false; }
  void await_suspend(std::coroutine_handle<> waiter) noexcept { m_waiter = waiter; }
  void await_resume() const noexcept {}

  /// Resumes the waiting coroutine, if any. It may destroy this object.
  void resume() {
    if (const auto waiter = std::exchange(m_waiter, {})) {
      waiter.resume();
    }
  }

private:
  std::coroutine_handle<> m_waiter;
};

// NOLINTEND(readability-convert-member-functions-to-static, modernize-use-nodiscard)

} // namespace tidewell
