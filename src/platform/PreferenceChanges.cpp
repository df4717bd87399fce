#include "platform/PreferenceChanges.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

namespace tidewell {

struct PreferenceChanges::State {
  struct Change {
    std::string key;
    std::optional<PreferenceValue> value;
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

PreferenceChanges::PreferenceChanges(WorkQueue& main)
    : m_main(main), m_state(std::make_shared<State>()) {}

PreferenceChanges::~PreferenceChanges() { m_state->isOpen = false; }

void PreferenceChanges::push(std::string key, std::optional<PreferenceValue> value) {
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

Subscription PreferenceChanges::observe(std::string_view key, PreferencesStore::Observer observer) {
  std::uint64_t before = 0;
  {
    const std::scoped_lock lock(m_state->mutex);
    before = m_state->count;
  }
  return m_state->observers[std::string(key)].add(
      [before, observer = std::move(observer)](const State::Change& change) {
        if (change.number > before) {
          observer(change.value);
        }
      });
}

} // namespace tidewell
