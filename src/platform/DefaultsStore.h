#pragma once

#include "base/Observers.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tidewell {

/// A stored preference.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string>;

/// Stored preferences under their keys.
using DefaultsValues = std::map<std::string, DefaultsValue, std::less<>>;

/// Whether both have the same type and value. Unlike "==" it takes one not-a-number for another.
[[nodiscard]] inline bool isSame(const DefaultsValue& left, const DefaultsValue& right) {
  const auto* leftReal = std::get_if<double>(&left);
  const auto* rightReal = std::get_if<double>(&right);
  if (leftReal != nullptr && rightReal != nullptr && std::isnan(*leftReal)) {
    return std::isnan(*rightReal);
  }
  return left == right;
}

/// The user's persistent preferences: typed values under text keys, shared with other writers.
class DefaultsStore {
public:
  /// Hears the new value of a key, none when the key is gone.
  using Observer = std::function<void(const std::optional<DefaultsValue>&)>;

  DefaultsStore() = default;
  DefaultsStore(const DefaultsStore&) = delete;
  DefaultsStore& operator=(const DefaultsStore&) = delete;
  virtual ~DefaultsStore() = default;

  /// The stored value; none when the key was never written. Any thread.
  [[nodiscard]] virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;

  /// Stores a value. Every later reader in this process sees it, even when the disk refused it.
  /// Any thread.
  virtual void set(std::string_view key, DefaultsValue value) = 0;

  /// Calls the observer on the main thread after each change of the key's value, whoever made it;
  /// not for a write of an equal value, and not for the value present now. Main thread.
  [[nodiscard]] virtual Subscription observe(std::string key, Observer observer) = 0;
};

/// The stored number as a double; none when the value is no number.
[[nodiscard]] inline std::optional<double> asDouble(const std::optional<DefaultsValue>& value) {
  if (!value) {
    return std::nullopt;
  }
  if (const auto* real = std::get_if<double>(&*value)) {
    return *real;
  }
  if (const auto* integer = std::get_if<std::int64_t>(&*value)) {
    return static_cast<double>(*integer);
  }
  return std::nullopt;
}

/// The stored value when it has exactly the type T; none otherwise.
template <class T>
[[nodiscard]] std::optional<T> asExactly(const std::optional<DefaultsValue>& value) {
  if (value) {
    if (const auto* stored = std::get_if<T>(&*value)) {
      return *stored;
    }
  }
  return std::nullopt;
}

/// What a reader sees who asks the store directly for a number: zero when there is none.
[[nodiscard]] inline double directDouble(const DefaultsStore& store, std::string_view key) {
  return asDouble(store.value(key)).value_or(0.0);
}

/// What a reader sees who asks the store directly for a truth value: false when there is none.
[[nodiscard]] inline bool directBool(const DefaultsStore& store, std::string_view key) {
  return asExactly<bool>(store.value(key)).value_or(false);
}

} // namespace tidewell
