#pragma once

#include "platform/PreferencesStore.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

namespace tidewell::test {

/// The number, or the default if it is missing or has another type.
inline double numberIn(const std::optional<PreferenceValue>& value, double byDefault) {
  if (value && std::holds_alternative<double>(*value)) {
    return std::get<double>(*value);
  }
  if (value && std::holds_alternative<std::int64_t>(*value)) {
    return static_cast<double>(std::get<std::int64_t>(*value));
  }
  return byDefault;
}

/// The boolean, or the default if it is missing or has another type.
inline bool truthIn(const std::optional<PreferenceValue>& value, bool byDefault) {
  return value && std::holds_alternative<bool>(*value) ? std::get<bool>(*value) : byDefault;
}

} // namespace tidewell::test
