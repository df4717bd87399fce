#include "platform/linux/files/AutostartLoginItem.h"

#include "platform/linux/files/FilePath.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell::test {
namespace {

namespace fs = std::filesystem;

class AutostartLoginItemTest : public testing::Test {
protected:
  TemporaryDirectory directory;
  fs::path entry = directory / "config/autostart/com.halden.Tidewell.desktop";
  AutostartLoginItem item{(directory / "config").string(), "/opt/my programs/tidewell"};
};

TEST_F(AutostartLoginItemTest, RegisteringMakesAnEntryThatStartsTheProgram) {
  EXPECT_EQ(item.registerItem(), std::nullopt);
  EXPECT_EQ(contentsOf(entry), "[Desktop Entry]\n"
                               "Type=Application\n"
                               "Name=Tidewell\n"
                               "Comment=Network speed in the panel\n"
                               "Icon=com.halden.Tidewell\n"
                               "Exec=\"/opt/my programs/tidewell\" --keep-running\n"
                               "TryExec=/opt/my programs/tidewell\n"
                               "Terminal=false\n"
                               "StartupNotify=false\n");
}

TEST_F(AutostartLoginItemTest, RegisteringReplacesAnEntryThatTheUserDisabled) {
  fs::create_directories(entry.parent_path());
  writeInPlace(entry, "[Desktop Entry]\nHidden=true\n");
  EXPECT_EQ(item.registerItem(), std::nullopt);
  EXPECT_EQ(contentsOf(entry).find("Hidden"), std::string::npos);
  EXPECT_EQ(filesNamed(entry.parent_path(), "").size(), 1U);
}

TEST_F(AutostartLoginItemTest, UnregisteringRemovesTheEntryAndSucceedsWithoutOne) {
  EXPECT_EQ(item.registerItem(), std::nullopt);
  EXPECT_EQ(item.unregisterItem(), std::nullopt);
  EXPECT_FALSE(fs::exists(entry));
  EXPECT_EQ(item.unregisterItem(), std::nullopt);
}

TEST_F(AutostartLoginItemTest, AFailureIsDescribed) {
  const std::string config = (directory / "config").string();
  writeInPlace(config, "");
  EXPECT_EQ(item.registerItem(), config + "/autostart: Not a directory");
  EXPECT_EQ(item.unregisterItem(), std::nullopt);

  fs::remove(config);
  fs::create_directories(entry / "in the way");
  EXPECT_EQ(item.registerItem(), entry.string() + ": Is a directory");
  EXPECT_EQ(item.unregisterItem(), entry.string() + ": Is a directory");
  EXPECT_EQ(filesNamed(entry.parent_path(), "").size(), 1U);
}

TEST_F(AutostartLoginItemTest, AProgramThatDoesNotKnowItsPathIsNotRegistered) {
  AutostartLoginItem lost((directory / "config").string(), "");
  EXPECT_EQ(lost.registerItem(), "the program's own path is unknown");
  EXPECT_FALSE(fs::exists(entry));
}

TEST(RunningProgram, IsThisTest) {
  EXPECT_EQ(runningProgram(), fs::read_symlink("/proc/self/exe").string());
  EXPECT_TRUE(runningProgram().starts_with('/'));
}

TEST(DesktopEntry, QuotesAnOrdinaryPath) {
  EXPECT_EQ(execValue("/usr/bin/tidewell"), R"("/usr/bin/tidewell")");
}

TEST(DesktopEntry, EscapesAnyValueWithoutQuotingIt) {
  EXPECT_EQ(stringValue("/a b/100%"), "/a b/100%");
  EXPECT_EQ(stringValue("/a\\b\n"), R"(/a\\b\n)");
}

TEST(DesktopEntry, EscapesWhatHasAMeaningBetweenQuotesAndThenInAnyValue) {
  EXPECT_EQ(execValue("/a b/100%"), R"("/a b/100%%")");
  EXPECT_EQ(execValue(R"(/a"b)"), R"("/a\\"b")");
  EXPECT_EQ(execValue("/a$b`c"), R"("/a\\$b\\`c")");
  EXPECT_EQ(execValue(R"(/a\b)"), R"("/a\\\\b")");
  EXPECT_EQ(execValue("/a\nb\tc\rd"), R"("/a\nb\tc\rd")");
}

} // namespace
} // namespace tidewell::test
