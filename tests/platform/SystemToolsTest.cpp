#include "platform/linux/process/SystemTools.h"

#include "support/NetworkNamespace.h"

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

TEST(SystemTools, PingTheSameOperatorOverIPv6WhereThereIsNoIPv4) {
  const auto network = NetworkNamespace::enter();
  if (!network || !commandOf({Tool::ping, "1.1.1.1", 2.0})) {
    GTEST_SKIP() << "this machine has no network namespaces or no ping";
  }
  const auto targetAfter = [](const std::string& command, const std::string& asked = "1.1.1.1") {
    EXPECT_TRUE(shell(command));
    return commandOf({Tool::ping, asked, 2.0})->arguments.back();
  };
  EXPECT_EQ(targetAfter("ip link add wan0 type veth peer name far0 && ip link set far0 up && "
                        "ip link set wan0 up"),
            "1.1.1.1")
      << "without any route";
  EXPECT_EQ(targetAfter("sysctl -qw net.ipv6.conf.wan0.disable_ipv6=0 && "
                        "ip -6 addr add 2001:db8::1/64 dev wan0 nodad && "
                        "ip -6 route add default via 2001:db8::ff"),
            "2606:4700:4700::1111");
  EXPECT_EQ(targetAfter("true", "192.0.2.7"), "192.0.2.7") << "another address has no other";
  EXPECT_EQ(
      targetAfter("ip addr add 192.0.2.1/24 dev wan0 && ip route add default via 192.0.2.254"),
      "1.1.1.1");
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
