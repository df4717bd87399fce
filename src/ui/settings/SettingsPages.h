#pragma once

#include "ui/settings/SettingsSection.h"

namespace tidewell {

class AppSettings;
class PreferencesStore;
class SettingsPage;

/// The content of a section, which the caller owns. Borrows the preferences and their store.
[[nodiscard]] SettingsPage* makeSettingsPage(SettingsSection section, AppSettings& settings,
                                             PreferencesStore& store);

} // namespace tidewell
