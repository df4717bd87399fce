#include "platform/linux/files/FilePath.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

TEST(ConfigurationDirectory, IsWhatTheEnvironmentNames) {
  EXPECT_EQ(configurationDirectory("/etc/mine", "/home/me"), "/etc/mine");
}

TEST(ConfigurationDirectory, IsBelowTheHomeDirectoryOtherwise) {
  EXPECT_EQ(configurationDirectory(nullptr, "/home/me"), "/home/me/.config");
  EXPECT_EQ(configurationDirectory("", "/home/me"), "/home/me/.config");
  EXPECT_EQ(configurationDirectory("relative/path", "/home/me"), "/home/me/.config");
}

TEST(StateDirectory, IsWhatTheEnvironmentNamesOrBelowTheHomeDirectory) {
  EXPECT_EQ(stateDirectory("/var/mine", "/home/me"), "/var/mine");
  EXPECT_EQ(stateDirectory(nullptr, "/home/me"), "/home/me/.local/state");
}

TEST(ConfigurationDirectory, AsksTheUserDatabaseWhereTheEnvironmentKnowsNoHome) {
  const passwd* const user = ::getpwuid(::getuid());
  ASSERT_NE(user, nullptr);
  const std::string expected = std::string(user->pw_dir) + "/.config";
  EXPECT_EQ(configurationDirectory(nullptr, nullptr), expected);
  EXPECT_EQ(configurationDirectory(nullptr, "relative"), expected);
}

} // namespace
} // namespace tidewell::test
