#include "platform/linux/process/SystemTools.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace tidewell::test {
namespace {

TEST(SystemTools, AskPingForOneEchoAndAWaitInWholeSeconds) {
  const auto command = commandOf({Tool::ping, "1.1.1.1", 2.0});
  if (::access("/usr/bin/ping", X_OK) != 0 && ::access("/bin/ping", X_OK) != 0) {
    EXPECT_FALSE(command);
    GTEST_SKIP() << "no ping is installed here";
  }
  ASSERT_TRUE(command);
  EXPECT_TRUE(command->executable.ends_with("bin/ping")) << command->executable;
  EXPECT_EQ(command->arguments, (std::vector<std::string>{"-c", "1", "-W", "2", "1.1.1.1"}));
  EXPECT_GT(command->limit, 2.0);
  EXPECT_EQ(command->priority, ChildPriority::utility);
  EXPECT_EQ(commandOf({Tool::ping, "1.1.1.1", 2.001})->arguments[3], "3");
}

TEST(SystemTools, AskTheHelperOfThisProgramWhoUsesTheNetwork) {
  const auto command = commandOf({Tool::processTraffic, {}, 0.0});
  ASSERT_TRUE(command);
  EXPECT_TRUE(command->executable.ends_with("/libexec/tidewell/nettop")) << command->executable;
  EXPECT_GT(command->limit, 4.0) << "the service's own watchdog comes first";
  EXPECT_EQ(command->priority, ChildPriority::utility);
}

TEST(SystemTools, MeasureTheLineWithTheHelperOfThisProgram) {
  const auto command = commandOf({Tool::lineTest, {}, 0.0});
  ASSERT_TRUE(command);
  EXPECT_TRUE(command->executable.ends_with("/libexec/tidewell/networkQuality"))
      << command->executable;
  EXPECT_GT(command->limit, 40.0);
  EXPECT_EQ(command->priority, ChildPriority::normal);
}

} // namespace
} // namespace tidewell::test
