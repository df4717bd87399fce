#pragma once

#include "platform/PreferencesStore.h"

#include <string>
#include <string_view>
#include <utility>

namespace tidewell::test {

/// Preferences in memory.
class FakePreferencesStore final : public PreferencesStore {
public:
  using PreferencesStore::PreferencesStore;

  std::error_code set(std::string_view key, PreferenceValue value) override {
    if (refusal) {
      return refusal;
    }
    PreferenceValues changed = values();
    changed.insert_or_assign(std::string(key), std::move(value));
    replaceValues(std::move(changed));
    return {};
  }

  /// While set, no value can be stored, for this reason.
  std::error_code refusal;

  /// Removes a value, as another writer may.
  void remove(std::string_view key) {
    PreferenceValues changed = values();
    changed.erase(std::string(key));
    replaceValues(std::move(changed));
  }

  /// Removes every value, as another writer may.
  void clear() { replaceValues({}); }
};

} // namespace tidewell::test
