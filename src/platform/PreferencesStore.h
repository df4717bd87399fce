#pragma once

#include "base/Observers.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace tidewell {

/// A stored preference.
using PreferenceValue = std::variant<bool, std::int64_t, double, std::string>;

/// Stored preferences under their keys.
using PreferenceValues = std::map<std::string, PreferenceValue, std::less<>>;

/// Whether both have the same type and value. Unlike "==", NaN equals NaN.
[[nodiscard]] inline bool isSame(const PreferenceValue& left, const PreferenceValue& right) {
  const auto* leftReal = std::get_if<double>(&left);
  const auto* rightReal = std::get_if<double>(&right);
  if (leftReal != nullptr && rightReal != nullptr && std::isnan(*leftReal)) {
    return std::isnan(*rightReal);
  }
  return left == right;
}

/// The user's persistent preferences: typed values under text keys, shared with other writers.
class PreferencesStore {
public:
  /// Receives the new value of a key, nullopt if the key was removed.
  using Observer = std::function<void(const std::optional<PreferenceValue>&)>;

  PreferencesStore() = default;
  PreferencesStore(const PreferencesStore&) = delete;
  PreferencesStore& operator=(const PreferencesStore&) = delete;
  virtual ~PreferencesStore() = default;

  /// The stored value; nullopt if there is none.
  [[nodiscard]] virtual std::optional<PreferenceValue> value(std::string_view key) const = 0;

  /// Stores a value. Later readers in this process get it even if the disk refused it.
  virtual void set(std::string_view key, PreferenceValue value) = 0;

  /// Calls the observer on the main queue after each change of the key's value by any writer; not
  /// for a write of an equal value, and not for the current value.
  [[nodiscard]] virtual Subscription observe(std::string_view key, Observer observer) = 0;
};

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

} // namespace tidewell
