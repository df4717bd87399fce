#include "platform/DefaultsChanges.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace tidewell {

struct DefaultsChanges::State {
  struct Change {
    std::string key;
    std::optional<DefaultsValue> value;
    std::uint64_t number;
  };

  std::optional<Change> take() {
    const std::scoped_lock lock(mutex);
    if (waiting.empty()) {
      return std::nullopt;
    }
    Change change = std::move(waiting.front());
    waiting.pop_front();
    return change;
  }

  void deliver() {
    while (isOpen) {
      const std::optional<Change> change = take();
      if (!change) {
        return;
      }
      if (const auto found = observers.find(change->key); found != observers.end()) {
        found->second.notify(*change);
      }
    }
  }

  std::mutex mutex;
  std::deque<Change> waiting; // guarded by mutex
  std::uint64_t count = 0;    // guarded by mutex

  bool isOpen = true; // main thread, as all below
  std::map<std::string, Observers<const Change&>> observers;
};

DefaultsChanges::DefaultsChanges(WorkQueue& main)
    : m_main(main), m_state(std::make_shared<State>()) {}

DefaultsChanges::~DefaultsChanges() { m_state->isOpen = false; }

void DefaultsChanges::push(std::string key, std::optional<DefaultsValue> value) {
  {
    const std::scoped_lock lock(m_state->mutex);
    m_state->waiting.push_back({std::move(key), std::move(value), ++m_state->count});
    if (m_state->waiting.size() > 1) {
      return; // the delivery that is under way takes this one along
    }
  }
  m_main.post([state = std::weak_ptr<State>(m_state)] {
    if (const auto alive = state.lock()) {
      alive->deliver();
    }
  });
}

Subscription DefaultsChanges::observe(const std::string& key, DefaultsStore::Observer observer) {
  std::uint64_t before = 0;
  {
    const std::scoped_lock lock(m_state->mutex);
    before = m_state->count;
  }
  return m_state->observers[key].add(
      [before, observer = std::move(observer)](const State::Change& change) {
        if (change.number > before) {
          observer(change.value);
        }
      });
}

} // namespace tidewell
