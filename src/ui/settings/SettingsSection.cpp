#include "ui/settings/SettingsSection.h"

#include "ui/settings/SettingsPage.h"

namespace tidewell {
namespace {

using S = AppSettings;

void fillGeneral(SettingsPage& page) {
  page.settingGroup("Monitoring");
  page.settingToggle("Launch at Login", "Start Tidewell when you log in",
                     {preference::launchAtLogin.key, &S::launchAtLogin, &S::setLaunchAtLogin});
  page.settingToggle(
      "Check for Updates", "Automatically check on launch",
      {preference::checkForUpdates.key, &S::checkForUpdates, &S::setCheckForUpdates});
  page.settingPicker<double>(
      "Refresh Interval", "How often to sample network speed",
      {preference::refreshInterval.key, &S::refreshInterval, &S::setRefreshInterval},
      {{"1 second", 1.0}, {"2 seconds", 2.0}, {"5 seconds", 5.0}});
  // The device names are fixed, whatever the machine has.
  page.settingPicker<std::string>(
      "Monitor Interface", "Network interface to track",
      {preference::monitorInterface.key, &S::monitorInterface, &S::setMonitorInterface},
      {{"All Interfaces", "all"}, {"Wi-Fi (en0)", "en0"}, {"Ethernet (en1)", "en1"}});
  page.settingToggle(
      "Track Per-Process", "Monitor bandwidth per application",
      {preference::trackPerProcess.key, &S::trackPerProcess, &S::setTrackPerProcess});
}

void fillAlerts(SettingsPage& page) {
  page.settingGroup("Notifications");
  page.settingToggle(
      "Enable Notifications", "Show alerts for speed drops and outages",
      {preference::showNotifications.key, &S::showNotifications, &S::setShowNotifications});
  page.settingGroup("Thresholds");
  page.settingPicker<double>(
      "Slow Speed Warning", "Alert when below this download speed",
      {preference::slowSpeedThreshold.key, &S::slowSpeedThreshold, &S::setSlowSpeedThreshold},
      {{"5 Mbps", 5.0}, {"10 Mbps", 10.0}, {"25 Mbps", 25.0}, {"50 Mbps", 50.0}});
  page.settingPicker<double>(
      "High Latency Warning", "Alert when ping exceeds this",
      {preference::highLatencyThreshold.key, &S::highLatencyThreshold, &S::setHighLatencyThreshold},
      {{"50 ms", 50.0}, {"100 ms", 100.0}, {"200 ms", 200.0}});
}

void fillDisplay(SettingsPage& page) {
  page.settingGroup("Menubar");
  page.settingToggle(
      "Show Upload Speed", "Display upload speed alongside download",
      {preference::showUploadInMenubar.key, &S::showUploadInMenubar, &S::setShowUploadInMenubar});
}

void fillData(SettingsPage& page) {
  page.settingGroup("Retention");
  page.settingPicker<std::int64_t>(
      "Keep History", "How long to store speed history",
      {preference::dataRetentionDays.key, &S::dataRetentionDays, &S::setDataRetentionDays},
      {{"7 days", 7}, {"30 days", 30}, {"90 days", 90}, {"1 year", 365}});
}

void fillAdvanced(SettingsPage& page) {
  page.note("Advanced settings coming in a future release.");
}

struct Section {
  const char* title;
  Icon symbol;
  void (*fill)(SettingsPage& page);
};

const Section& at(SettingsSection section) {
  static constexpr std::array<Section, 5> sections = {{{"General", Icon::gear, fillGeneral},
                                                       {"Alerts", Icon::bell, fillAlerts},
                                                       {"Display", Icon::barChart, fillDisplay},
                                                       {"Data", Icon::drive, fillData},
                                                       {"Advanced", Icon::link, fillAdvanced}}};
  return sections.at(static_cast<std::size_t>(section));
}

} // namespace

std::string_view rawValue(SettingsSection section) { return at(section).title; }

Icon symbol(SettingsSection section) { return at(section).symbol; }

SettingsPage* makeSettingsPage(SettingsSection section, const SettingsSources& sources) {
  auto* const page = new SettingsPage(rawValue(section), sources);
  at(section).fill(*page);
  return page;
}

} // namespace tidewell
