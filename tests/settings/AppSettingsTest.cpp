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

using namespace std::string_literals;

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

// A property: its key, its default, another value, and how it is read and written.
struct Property {
  const char* key;
  PreferenceValue byDefault;
  PreferenceValue other;
  std::function<PreferenceValue(const AppSettings&)> read;
  std::function<void(AppSettings&, const PreferenceValue&)> write;
};

template <class T, class Written>
Property property(const char* key, T byDefault, T other, T (AppSettings::*read)() const,
                  std::error_code (AppSettings::*write)(Written)) {
  return {key, byDefault, other, [read](const AppSettings& settings) { return (settings.*read)(); },
          [write](AppSettings& settings, const PreferenceValue& value) {
            (settings.*write)(std::get<T>(value));
          }};
}

std::vector<Property> properties() {
  using S = AppSettings;
  return {
      property("launchAtLogin", false, true, &S::launchAtLogin, &S::setLaunchAtLogin),
      property("checkForUpdates", true, false, &S::checkForUpdates, &S::setCheckForUpdates),
      property("refreshInterval", 2.0, 5.0, &S::refreshInterval, &S::setRefreshInterval),
      property("monitorInterface", "all"s, "wlan0"s, &S::monitorInterface, &S::setMonitorInterface),
      property("trackPerProcess", true, false, &S::trackPerProcess, &S::setTrackPerProcess),
      property("slowSpeedThreshold", 10.0, 25.0, &S::slowSpeedThreshold, &S::setSlowSpeedThreshold),
      property("highLatencyThreshold", 100.0, 50.0, &S::highLatencyThreshold,
               &S::setHighLatencyThreshold),
      property("showNotifications", true, false, &S::showNotifications, &S::setShowNotifications),
      property("hasCompletedOnboarding", false, true, &S::hasCompletedOnboarding,
               &S::setHasCompletedOnboarding),
      property<std::int64_t>("dataRetentionDays", 30, 90, &S::dataRetentionDays,
                             &S::setDataRetentionDays),
      property("showUploadInMenubar", true, false, &S::showUploadInMenubar,
               &S::setShowUploadInMenubar),
  };
}

void expectDefaults(const AppSettings& settings) {
  for (const Property& property : properties()) {
    EXPECT_EQ(property.read(settings), property.byDefault) << property.key;
  }
}

TEST_F(AppSettingsTest, AFreshUserReadsTheDefaultsWhichAreNotStored) {
  expectDefaults(settings);
  for (const Property& property : properties()) {
    EXPECT_EQ(store.value(property.key), std::nullopt);
  }
  EXPECT_TRUE(loginItem.calls.empty());
}

TEST_F(AppSettingsTest, EachPropertyIsStoredUnderItsNameWithItsType) {
  for (const Property& property : properties()) {
    property.write(settings, property.other);
    EXPECT_EQ(store.value(property.key), property.other) << property.key;
  }
}

TEST_F(AppSettingsTest, EachPropertyReadsWhatAnotherWriterStored) {
  for (const Property& property : properties()) {
    store.set(property.key, property.other);
    EXPECT_EQ(property.read(settings), property.other) << property.key;
  }
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

TEST_F(AppSettingsTest, ARefusedValueChangesNothing) {
  store.refusal = std::make_error_code(std::errc::read_only_file_system);
  EXPECT_EQ(settings.setRefreshInterval(5.0), store.refusal);
  EXPECT_EQ(settings.setLaunchAtLogin(true), store.refusal);
  EXPECT_TRUE(loginItem.calls.empty());
  expectDefaults(settings);
  store.refusal = {};
  EXPECT_FALSE(settings.setLaunchAtLogin(true));
  EXPECT_EQ(loginItem.calls, std::vector<std::string>{"register"});
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
