#pragma once

#include <string_view>

/// The keys under which the preferences are stored, spelled like the properties of `AppSettings`.
namespace tidewell::settingsKeys {

inline constexpr std::string_view launchAtLogin = "launchAtLogin";
inline constexpr std::string_view checkForUpdates = "checkForUpdates";
inline constexpr std::string_view refreshInterval = "refreshInterval";
inline constexpr std::string_view monitorInterface = "monitorInterface";
inline constexpr std::string_view trackPerProcess = "trackPerProcess";
inline constexpr std::string_view slowSpeedThreshold = "slowSpeedThreshold";
inline constexpr std::string_view highLatencyThreshold = "highLatencyThreshold";
inline constexpr std::string_view showNotifications = "showNotifications";
inline constexpr std::string_view hasCompletedOnboarding = "hasCompletedOnboarding";
inline constexpr std::string_view dataRetentionDays = "dataRetentionDays";
inline constexpr std::string_view showUploadInMenubar = "showUploadInMenubar";

} // namespace tidewell::settingsKeys
