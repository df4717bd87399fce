#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tidewell {

/// Keeps one observer registered until destroyed.
///
/// May be destroyed at any time: by the observer itself, by another observer, or after the observed
/// object.
class Subscription {
public:
  Subscription() = default;
  explicit Subscription(std::function<void()> end) : m_end(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : m_end(std::exchange(other.m_end, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      end();
      m_end = std::exchange(other.m_end, nullptr);
    }
    return *this;
  }
  ~Subscription() { end(); }

  /// Ends the registration now. Does nothing if it has already ended.
  void end() {
    if (auto finish = std::exchange(m_end, nullptr)) {
      finish();
    }
  }

private:
  std::function<void()> m_end;
};

/// An ordered list of observers that may change during a notification.
///
/// Observers are called in the order of registration. One added during a notification is first
/// called at the next; one removed during a notification is not called again. An observer may
/// destroy the list.
template <class... Args> class Observers {
public:
  using Function = std::function<void(Args...)>;

  [[nodiscard]] Subscription add(Function function) {
    auto observer = std::make_shared<Observer>(Observer{std::move(function), true});
    m_list->members.push_back(observer);
    return Subscription([list = std::weak_ptr<List>(m_list), observer = std::move(observer)] {
      observer->active = false;
      if (auto remaining = list.lock()) {
        remaining->sweep();
      }
    });
  }

  void notify(Args... args) {
    const std::shared_ptr<List> list = m_list;
    const std::size_t count = list->members.size();
    ++list->depth;
    for (std::size_t index = 0; index < count; ++index) {
      // Keeps the running function alive if its observer ends itself.
      const std::shared_ptr<Observer> observer = list->members[index];
      if (observer->active) {
        observer->function(args...);
      }
    }
    --list->depth;
    list->sweep();
  }

  [[nodiscard]] bool empty() const { return m_list->members.empty(); }

private:
  struct Observer {
    Function function;
    bool active;
  };
  struct List {
    std::vector<std::shared_ptr<Observer>> members;
    int depth = 0;

    void sweep() {
      if (depth == 0) {
        std::erase_if(members, [](const auto& observer) { return !observer->active; });
      }
    }
  };

  std::shared_ptr<List> m_list = std::make_shared<List>();
};

} // namespace tidewell
