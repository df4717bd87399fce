#pragma once

#include "ui/components/Icon.h"

#include <QString>

#include <array>
#include <string_view>

namespace tidewell {

class SettingsPage;
struct SettingsSources;

/// The sections of the settings.
enum class SettingsSection { general, alerts, display, data, advanced };

/// All sections, in the order of the sidebar.
inline constexpr std::array<SettingsSection, 5> allSettingsSections = {
    SettingsSection::general, SettingsSection::alerts, SettingsSection::display,
    SettingsSection::data, SettingsSection::advanced};

/// The title in English: "General", "Alerts", "Display", "Data" or "Advanced".
[[nodiscard]] std::string_view rawValue(SettingsSection section);

/// The title in the user's language.
[[nodiscard]] QString titleText(SettingsSection section);

/// The symbol beside the title in the sidebar.
[[nodiscard]] Icon symbol(SettingsSection section);

/// Creates the content of a section, which the caller owns.
[[nodiscard]] SettingsPage* makeSettingsPage(SettingsSection section,
                                             const SettingsSources& sources);

} // namespace tidewell
