#include "ui/application/Preferences.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <QTest>

namespace tidewell::test {
namespace {

class WindowPreferencesTest : public testing::Test {
protected:
  WindowPreferencesTest() {
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(directory.path().string()));
  }

  TemporaryDirectory directory;
};

TEST_F(WindowPreferencesTest, ReachOtherWritersOfTheSameFile) {
  Preferences preferences("/usr/bin/tidewell");
  preferences.settings().setRefreshInterval(5.0);
  QtQueue otherQueue;
  const PreferencesFile other((directory.path() / "tidewell/preferences.toml").string(), otherQueue,
                              qtWatch());
  EXPECT_EQ(other.value("refreshInterval"), PreferenceValue(5.0));
}

TEST_F(WindowPreferencesTest, HearOfTheChangesOfOtherWriters) {
  Preferences preferences("/usr/bin/tidewell");
  double heard = 0.0;
  const Subscription watch = preferences.store().observe(
      "refreshInterval", [&](const auto& value) { heard = as<double>(value).value_or(-1.0); });
  writeInPlace(directory.path() / "tidewell/preferences.toml", "refreshInterval = 3.0\n");
  EXPECT_TRUE(QTest::qWaitFor([&] { return heard == 3.0; }, 10'000));
  EXPECT_EQ(preferences.settings().refreshInterval(), 3.0);
}

TEST_F(WindowPreferencesTest, RegisterTheResidentAtLogin) {
  Preferences preferences("/opt/tidewell/bin/tidewell");
  preferences.settings().setLaunchAtLogin(true);
  const auto entries = std::filesystem::directory_iterator(directory.path() / "autostart");
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
  preferences.settings().setLaunchAtLogin(false);
  EXPECT_TRUE(std::filesystem::is_empty(directory.path() / "autostart"));
}

TEST_F(WindowPreferencesTest, KnowTheProgramThatTheyBelongTo) {
  EXPECT_EQ(residentProgram("/usr/libexec/tidewell/tidewell-windows"), "/usr/bin/tidewell");
  const auto windows = (directory.path() / "libexec/tidewell/tidewell-windows").string();
  const auto installed = directory.path() / "bin/tidewell";
  const auto built = directory.path() / "src/tidewell";
  std::filesystem::create_directories(built);
  EXPECT_EQ(residentProgram(windows), installed.string()) << "a directory is no program";
  std::filesystem::remove(built);
  std::filesystem::copy_file("/bin/true", built);
  EXPECT_EQ(residentProgram(windows), built.string());
  std::filesystem::create_directories(installed.parent_path());
  std::filesystem::copy_file("/bin/true", installed);
  EXPECT_EQ(residentProgram(windows), installed.string());
}

} // namespace
} // namespace tidewell::test
