#include "ui/settings/SettingsSection.h"

#include "base/Translation.h"
#include "ui/components/ShownText.h"
#include "ui/settings/SettingsPage.h"

namespace tidewell {
namespace {

using S = AppSettings;

void fillGeneral(SettingsPage& page) {
  page.settingGroup(translated("Monitoring"));
  page.settingToggle(translated("Launch at Login"), translated("Start Tidewell when you log in"),
                     {preference::launchAtLogin.key, &S::launchAtLogin, &S::setLaunchAtLogin});
  page.settingToggle(
      translated("Check for Updates"), translated("Automatically check on launch"),
      {preference::checkForUpdates.key, &S::checkForUpdates, &S::setCheckForUpdates});
  page.settingPicker<double>(
      translated("Refresh Interval"), translated("How often to sample network speed"),
      {preference::refreshInterval.key, &S::refreshInterval, &S::setRefreshInterval},
      {{translated("1 second"), 1.0},
       {translated("2 seconds"), 2.0},
       {translated("5 seconds"), 5.0}});
  // The device names are fixed, whatever the machine has.
  page.settingPicker<std::string>(
      translated("Monitor Interface"), translated("Network interface to track"),
      {preference::monitorInterface.key, &S::monitorInterface, &S::setMonitorInterface},
      {{translated("All Interfaces"), "all"},
       {translated("Wi-Fi (en0)"), "en0"},
       {translated("Ethernet (en1)"), "en1"}});
  page.settingToggle(
      translated("Track Per-Process"), translated("Monitor bandwidth per application"),
      {preference::trackPerProcess.key, &S::trackPerProcess, &S::setTrackPerProcess});
}

void fillAlerts(SettingsPage& page) {
  page.settingGroup(translated("Notifications"));
  page.settingToggle(
      translated("Enable Notifications"), translated("Show alerts for speed drops and outages"),
      {preference::showNotifications.key, &S::showNotifications, &S::setShowNotifications});
  page.settingGroup(translated("Thresholds"));
  page.settingPicker<double>(
      translated("Slow Speed Warning"), translated("Alert when below this download speed"),
      {preference::slowSpeedThreshold.key, &S::slowSpeedThreshold, &S::setSlowSpeedThreshold},
      {{"5 Mbps", 5.0}, {"10 Mbps", 10.0}, {"25 Mbps", 25.0}, {"50 Mbps", 50.0}});
  page.settingPicker<double>(
      translated("High Latency Warning"), translated("Alert when ping exceeds this"),
      {preference::highLatencyThreshold.key, &S::highLatencyThreshold, &S::setHighLatencyThreshold},
      {{"50 ms", 50.0}, {"100 ms", 100.0}, {"200 ms", 200.0}});
}

void fillDisplay(SettingsPage& page) {
  page.settingGroup(translated("Menubar"));
  page.settingToggle(
      translated("Show Upload Speed"), translated("Display upload speed alongside download"),
      {preference::showUploadInMenubar.key, &S::showUploadInMenubar, &S::setShowUploadInMenubar});
}

void fillData(SettingsPage& page) {
  page.settingGroup(translated("Retention"));
  page.settingPicker<std::int64_t>(
      translated("Keep History"), translated("How long to store speed history"),
      {preference::dataRetentionDays.key, &S::dataRetentionDays, &S::setDataRetentionDays},
      {{translated("7 days"), 7},
       {translated("30 days"), 30},
       {translated("90 days"), 90},
       {translated("1 year"), 365}});
}

void fillAdvanced(SettingsPage& page) {
  page.note(translated("Advanced settings coming in a future release."));
}

struct Section {
  const char* title;
  Icon symbol;
  void (*fill)(SettingsPage& page);
};

const Section& at(SettingsSection section) {
  static constexpr std::array<Section, 5> sections = {
      {{translatable("General"), Icon::gear, fillGeneral},
       {translatable("Alerts"), Icon::bell, fillAlerts},
       {translatable("Display"), Icon::barChart, fillDisplay},
       {translatable("Data"), Icon::drive, fillData},
       {translatable("Advanced"), Icon::link, fillAdvanced}}};
  return sections.at(static_cast<std::size_t>(section));
}

} // namespace

std::string_view rawValue(SettingsSection section) { return at(section).title; }

QString titleText(SettingsSection section) { return translatedText(at(section).title); }

Icon symbol(SettingsSection section) { return at(section).symbol; }

SettingsPage* makeSettingsPage(SettingsSection section, const SettingsSources& sources) {
  auto* const page = new SettingsPage(titleText(section), sources);
  at(section).fill(*page);
  return page;
}

} // namespace tidewell
