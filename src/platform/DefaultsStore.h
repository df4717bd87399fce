#pragma once

#include "base/Observers.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace tidewell {

/// A stored preference.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string>;

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

} // namespace tidewell
