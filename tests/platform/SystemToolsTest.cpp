#include "platform/linux/process/SystemTools.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace tidewell::test {
namespace {

TEST(SystemTools, AsksPingForTheSameTimeInItsOwnUnits) {
  const auto call = systemTool("/sbin/ping", {"-c", "1", "-W", "2000", "1.1.1.1"});
  if (::access("/usr/bin/ping", X_OK) != 0 && ::access("/bin/ping", X_OK) != 0) {
    EXPECT_FALSE(call);
    GTEST_SKIP() << "no ping is installed here";
  }
  ASSERT_TRUE(call);
  EXPECT_TRUE(call->executable.ends_with("bin/ping")) << call->executable;
  EXPECT_EQ(call->arguments, (std::vector<std::string>{"-c", "1", "-W", "2", "1.1.1.1"}));
  EXPECT_GT(call->limit, 2.0);
}

TEST(SystemTools, RoundsAWaitUpToWholeSeconds) {
  const auto call = systemTool("/sbin/ping", {"-W", "2001", "-W"});
  if (!call) {
    GTEST_SKIP() << "no ping is installed here";
  }
  EXPECT_EQ(call->arguments, (std::vector<std::string>{"-W", "3", "-W"}));
}

TEST(SystemTools, AsksTheHelperOfThisProgramWhoUsesTheNetwork) {
  const auto call = systemTool("/usr/bin/nettop", {"-P", "-x"});
  ASSERT_TRUE(call);
  EXPECT_TRUE(call->executable.ends_with("/libexec/tidewell/nettop")) << call->executable;
  EXPECT_EQ(call->arguments, (std::vector<std::string>{"-P", "-x"}));
  EXPECT_GT(call->limit, 4.0) << "the service's own watchdog comes first";
}

TEST(SystemTools, MeasuresTheLineWithTheHelperOfThisProgram) {
  const auto call = systemTool("/usr/bin/networkQuality", {"-s", "-v"});
  ASSERT_TRUE(call);
  EXPECT_TRUE(call->executable.ends_with("/libexec/tidewell/networkQuality")) << call->executable;
  EXPECT_EQ(call->arguments, (std::vector<std::string>{"-s", "-v"}));
  EXPECT_GT(call->limit, 40.0);
}

TEST(SystemTools, RunsNothingElse) {
  EXPECT_FALSE(systemTool("/bin/sh", {"-c", "true"}));
  EXPECT_FALSE(systemTool("ping", {}));
  EXPECT_FALSE(systemTool("", {}));
}

} // namespace
} // namespace tidewell::test
