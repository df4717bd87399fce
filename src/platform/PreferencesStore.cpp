#include "platform/PreferencesStore.h"

#include <cmath>
#include <utility>

namespace tidewell {

// Each change has a number, so that an observer can skip those from before its registration.
struct PreferencesStore::Observed {
  using Value = std::optional<PreferenceValue>;

  std::uint64_t changes = 0;
  std::map<std::string, Observers<std::uint64_t, const Value&>, std::less<>> observers;
};

bool isSame(const PreferenceValue& left, const PreferenceValue& right) {
  const auto* leftReal = std::get_if<double>(&left);
  const auto* rightReal = std::get_if<double>(&right);
  if (leftReal != nullptr && rightReal != nullptr && std::isnan(*leftReal)) {
    return std::isnan(*rightReal);
  }
  return left == right;
}

PreferencesStore::PreferencesStore(WorkQueue& main)
    : m_main(main), m_observed(std::make_shared<Observed>()) {}

std::optional<PreferenceValue> PreferencesStore::value(std::string_view key) const {
  const auto found = m_values.find(key);
  return found == m_values.end() ? std::nullopt : std::optional(found->second);
}

Subscription PreferencesStore::observe(std::string_view key, Observer observer) {
  return m_observed->observers[std::string(key)].add(
      [earlier = m_observed->changes, observer = std::move(observer)](
          std::uint64_t number, const std::optional<PreferenceValue>& value) {
        if (number > earlier) {
          observer(value);
        }
      });
}

void PreferencesStore::replaceValues(PreferenceValues values) {
  const PreferenceValues old = std::exchange(m_values, std::move(values));
  for (const auto& [key, value] : old) {
    if (!m_values.contains(key)) {
      announce(key, std::nullopt);
    }
  }
  for (const auto& [key, value] : m_values) {
    const auto before = old.find(key);
    if (before == old.end() || !isSame(before->second, value)) {
      announce(key, value);
    }
  }
}

void PreferencesStore::announce(const std::string& key,
                                const std::optional<PreferenceValue>& value) {
  m_main.post([weak = std::weak_ptr(m_observed), number = ++m_observed->changes, key, value] {
    const auto observed = weak.lock();
    if (observed == nullptr) {
      return;
    }
    if (const auto found = observed->observers.find(key); found != observed->observers.end()) {
      found->second.notify(number, value);
    }
  });
}

} // namespace tidewell
