#pragma once

#include "platform/PreferenceChanges.h"
#include "platform/PreferencesStore.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tidewell::test {

/// Preferences in memory, which tell their observers on `main` as the real ones do.
class FakePreferencesStore final : public PreferencesStore {
public:
  explicit FakePreferencesStore(WorkQueue& main) : m_changes(main) {}

  [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const override {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(found->second);
  }

  void set(std::string_view key, PreferenceValue value) override {
    const std::scoped_lock lock(m_mutex);
    const auto [entry, isNew] = m_values.try_emplace(std::string(key), value);
    if (isNew || !isSame(entry->second, value)) {
      entry->second = value;
      m_changes.push(std::string(key), std::move(value));
    }
  }

  /// Removes a value, as another writer may.
  void remove(std::string_view key) {
    const std::scoped_lock lock(m_mutex);
    if (const auto found = m_values.find(key); found != m_values.end()) {
      m_values.erase(found);
      m_changes.push(std::string(key), std::nullopt);
    }
  }

  /// Removes every value, as another writer may.
  void clear() {
    const std::scoped_lock lock(m_mutex);
    for (const auto& [key, value] : std::exchange(m_values, {})) {
      m_changes.push(key, std::nullopt);
    }
  }

  [[nodiscard]] Subscription observe(std::string_view key, Observer observer) override {
    return m_changes.observe(key, std::move(observer));
  }

private:
  PreferenceChanges m_changes;
  mutable std::mutex m_mutex;
  PreferenceValues m_values; // guarded by m_mutex
};

} // namespace tidewell::test
