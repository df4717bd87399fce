#include "settings/AppSettings.h"

#include "platform/LoginItem.h"
#include "support/FakePreferencesStore.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {
namespace {

class FakeLoginItem final : public LoginItem {
public:
  std::optional<std::string> registerItem() override { return called("register"); }
  std::optional<std::string> unregisterItem() override { return called("unregister"); }

  std::vector<std::string> calls;
  std::optional<std::string> error;
  std::function<void()> atCall = [] {};

private:
  std::optional<std::string> called(const char* name) {
    calls.emplace_back(name);
    atCall();
    return error;
  }
};

class AppSettingsTest : public testing::Test {
protected:
  VirtualScheduler scheduler;
  FakePreferencesStore store{scheduler.main()};
  FakeLoginItem loginItem;
  AppSettings settings{store, loginItem};
};

void expectDefaults(const AppSettings& settings) {
  EXPECT_FALSE(settings.launchAtLogin());
  EXPECT_TRUE(settings.checkForUpdates());
  EXPECT_EQ(settings.refreshInterval(), 2.0);
  EXPECT_EQ(settings.monitorInterface(), "all");
  EXPECT_TRUE(settings.trackPerProcess());
  EXPECT_EQ(settings.slowSpeedThreshold(), 10.0);
  EXPECT_EQ(settings.highLatencyThreshold(), 100.0);
  EXPECT_TRUE(settings.showNotifications());
  EXPECT_FALSE(settings.hasCompletedOnboarding());
  EXPECT_EQ(settings.dataRetentionDays(), 30);
  EXPECT_TRUE(settings.showUploadInMenubar());
}

TEST_F(AppSettingsTest, AFreshUserReadsTheDefaultsWhichAreNotStored) {
  expectDefaults(settings);
  for (const auto key :
       {"launchAtLogin", "refreshInterval", "monitorInterface", "dataRetentionDays"}) {
    EXPECT_EQ(store.value(key), std::nullopt);
  }
  EXPECT_TRUE(loginItem.calls.empty());
}

TEST_F(AppSettingsTest, EachPropertyIsStoredUnderItsNameWithItsType) {
  settings.setLaunchAtLogin(true);
  settings.setCheckForUpdates(false);
  settings.setRefreshInterval(5.0);
  settings.setMonitorInterface("wlan0");
  settings.setTrackPerProcess(false);
  settings.setSlowSpeedThreshold(25.0);
  settings.setHighLatencyThreshold(50.0);
  settings.setShowNotifications(false);
  settings.setHasCompletedOnboarding(true);
  settings.setDataRetentionDays(90);
  settings.setShowUploadInMenubar(false);

  EXPECT_EQ(store.value("launchAtLogin"), PreferenceValue(true));
  EXPECT_EQ(store.value("checkForUpdates"), PreferenceValue(false));
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(5.0));
  EXPECT_EQ(store.value("monitorInterface"), PreferenceValue(std::string("wlan0")));
  EXPECT_EQ(store.value("trackPerProcess"), PreferenceValue(false));
  EXPECT_EQ(store.value("slowSpeedThreshold"), PreferenceValue(25.0));
  EXPECT_EQ(store.value("highLatencyThreshold"), PreferenceValue(50.0));
  EXPECT_EQ(store.value("showNotifications"), PreferenceValue(false));
  EXPECT_EQ(store.value("hasCompletedOnboarding"), PreferenceValue(true));
  EXPECT_EQ(store.value("dataRetentionDays"), PreferenceValue(std::int64_t{90}));
  EXPECT_EQ(store.value("showUploadInMenubar"), PreferenceValue(false));
}

TEST_F(AppSettingsTest, EachPropertyReadsWhatAnotherWriterStored) {
  store.set("launchAtLogin", true);
  store.set("checkForUpdates", false);
  store.set("refreshInterval", 5.0);
  store.set("monitorInterface", std::string("wlan0"));
  store.set("trackPerProcess", false);
  store.set("slowSpeedThreshold", 25.0);
  store.set("highLatencyThreshold", 50.0);
  store.set("showNotifications", false);
  store.set("hasCompletedOnboarding", true);
  store.set("dataRetentionDays", std::int64_t{90});
  store.set("showUploadInMenubar", false);

  EXPECT_TRUE(settings.launchAtLogin());
  EXPECT_FALSE(settings.checkForUpdates());
  EXPECT_EQ(settings.refreshInterval(), 5.0);
  EXPECT_EQ(settings.monitorInterface(), "wlan0");
  EXPECT_FALSE(settings.trackPerProcess());
  EXPECT_EQ(settings.slowSpeedThreshold(), 25.0);
  EXPECT_EQ(settings.highLatencyThreshold(), 50.0);
  EXPECT_FALSE(settings.showNotifications());
  EXPECT_TRUE(settings.hasCompletedOnboarding());
  EXPECT_EQ(settings.dataRetentionDays(), 90);
  EXPECT_FALSE(settings.showUploadInMenubar());
  EXPECT_TRUE(loginItem.calls.empty());
}

TEST_F(AppSettingsTest, AnAbsentIntervalReadsAsItsDefaultHereAndStaysAbsentInTheStore) {
  EXPECT_EQ(settings.refreshInterval(), 2.0);
  EXPECT_EQ(store.value("refreshInterval"), std::nullopt);
  settings.setRefreshInterval(5.0);
  EXPECT_EQ(settings.refreshInterval(), 5.0);
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(5.0));
}

TEST_F(AppSettingsTest, ValuesAreNotChecked) {
  settings.setRefreshInterval(-3.0);
  settings.setDataRetentionDays(INT64_MIN);
  settings.setMonitorInterface("");
  EXPECT_EQ(settings.refreshInterval(), -3.0);
  EXPECT_EQ(settings.dataRetentionDays(), INT64_MIN);
  EXPECT_EQ(settings.monitorInterface(), "");
}

TEST_F(AppSettingsTest, ANumberPropertyTakesAStoredIntegerAndNoneTakesAnotherType) {
  store.set("refreshInterval", std::int64_t{5});
  EXPECT_EQ(settings.refreshInterval(), 5.0);
  for (const char* key : {"slowSpeedThreshold", "dataRetentionDays", "monitorInterface"}) {
    store.set(key, true);
  }
  for (const char* key : {"trackPerProcess", "launchAtLogin", "highLatencyThreshold"}) {
    store.set(key, std::string("yes"));
  }
  EXPECT_EQ(settings.slowSpeedThreshold(), 10.0);
  EXPECT_EQ(settings.dataRetentionDays(), 30);
  EXPECT_EQ(settings.monitorInterface(), "all");
  EXPECT_TRUE(settings.trackPerProcess());
  EXPECT_FALSE(settings.launchAtLogin());
  EXPECT_EQ(settings.highLatencyThreshold(), 100.0);
}

TEST_F(AppSettingsTest, LaunchAtLoginIsStoredBeforeTheItemIsRegisteredOrUnregistered) {
  std::vector<bool> storedAtCall;
  loginItem.atCall = [&] {
    storedAtCall.push_back(as<bool>(store.value("launchAtLogin")).value());
  };
  testing::internal::CaptureStdout();
  settings.setLaunchAtLogin(true);
  settings.setLaunchAtLogin(true);
  settings.setLaunchAtLogin(false);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(loginItem.calls, (std::vector<std::string>{"register", "register", "unregister"}));
  EXPECT_EQ(storedAtCall, (std::vector<bool>{true, true, false}));
}

TEST_F(AppSettingsTest, AFailedRegistrationPrintsOneLineAndKeepsTheValue) {
  loginItem.error = "the disk is full";
  testing::internal::CaptureStdout();
  settings.setLaunchAtLogin(true);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Launch at login error: the disk is full\n");
  EXPECT_TRUE(settings.launchAtLogin());

  loginItem.error = "no";
  testing::internal::CaptureStdout();
  settings.setLaunchAtLogin(false);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Launch at login error: no\n");
  EXPECT_FALSE(settings.launchAtLogin());
}

TEST_F(AppSettingsTest, WithoutAStoreEveryPropertyReadsAsItsDefaultAndWritesGoNowhere) {
  AppSettings& shared = AppSettings::shared();
  EXPECT_EQ(&shared, &AppSettings::shared());
  shared.setRefreshInterval(5.0);
  shared.setLaunchAtLogin(true);
  expectDefaults(shared);
  shared.attach(store, loginItem);
  shared.setRefreshInterval(5.0);
  EXPECT_EQ(shared.refreshInterval(), 5.0);
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(5.0));
  shared.detach();
  expectDefaults(shared);
}

} // namespace
} // namespace tidewell::test
