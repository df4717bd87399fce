#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <variant>

namespace tidewell {

/// A stored preference.
using PreferenceValue = std::variant<bool, std::int64_t, double, std::string>;

/// Stored preferences under their keys.
using PreferenceValues = std::map<std::string, PreferenceValue, std::less<>>;

/// Whether both have the same type and value. Unlike `==`, it considers NaN equal to NaN.
[[nodiscard]] bool isSame(const PreferenceValue& left, const PreferenceValue& right);

/// The value as a T, or nullopt if it has another type. An integer is also a double.
template <class T> [[nodiscard]] std::optional<T> as(const std::optional<PreferenceValue>& value) {
  if (!value) {
    return std::nullopt;
  }
  if constexpr (std::is_same_v<T, double>) {
    if (const auto* integer = std::get_if<std::int64_t>(&*value)) {
      return static_cast<double>(*integer);
    }
  }
  const auto* const stored = std::get_if<T>(&*value);
  return stored == nullptr ? std::nullopt : std::optional<T>(*stored);
}

/// The user's persistent preferences: typed values under text keys, shared with other writers.
class PreferencesStore : public Interface {
public:
  /// Receives the new value of a key, or nullopt if the key was removed.
  using Observer = std::function<void(const std::optional<PreferenceValue>&)>;

  /// Borrows the queue on which observers run.
  explicit PreferencesStore(WorkQueue& main);

  /// The stored value, or nullopt if the key is absent.
  [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const;

  /// Stores a value, which every later reader then sees. Returns why it could not be stored;
  /// nothing has changed then.
  virtual std::error_code set(std::string_view key, PreferenceValue value) = 0;

  /// Calls the observer once for each later change of the key's value, in order and never inside
  /// `set`. Changes by other programs count; writing an equal value does not.
  [[nodiscard]] Subscription observe(std::string_view key, Observer observer);

protected:
  [[nodiscard]] const PreferenceValues& values() const { return m_values; }

  /// Replaces all values and notifies the observers of those that differ.
  void replaceValues(PreferenceValues values);

private:
  struct Observed;

  void announce(const std::string& key, const std::optional<PreferenceValue>& value);

  WorkQueue& m_main;
  PreferenceValues m_values;
  std::shared_ptr<Observed> m_observed;
};

} // namespace tidewell
