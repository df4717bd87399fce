#pragma once

#include "bus/ResidentInterface.h"
#include "processes/ProcessUsage.h"
#include "speedtest/SpeedTestState.h"

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace tidewell {

/// Whether the resident is on the bus and answers.
enum class Presence { unknown, absent, silent, present };

/// The resident's properties as read from the bus.
struct ResidentValues {
  using Plain = std::variant<bool, std::int64_t, double, std::string>;

  /// The properties of plain types, by name.
  std::map<std::string, Plain> plain;
  std::vector<ProcessUsage> processes;
  /// Empty or one.
  std::vector<SpeedTestResult> lastSpeedTest;

  /// A property's value; the type's default if it is missing or has another type.
  template <class Value>
  [[nodiscard]] Value of(const residentInterface::Property<Value>& property) const {
    const auto found = plain.find(property.name);
    const Value* const value = found == plain.end() ? nullptr : std::get_if<Value>(&found->second);
    return value == nullptr ? Value{} : *value;
  }
};

} // namespace tidewell
