#include "control/CommandLine.h"

#include <initializer_list>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace tidewell {
namespace {

using Verb = ControlCommand::Verb;

ControlRequest parsed(std::initializer_list<std::string_view> arguments) {
  const std::vector<std::string_view> words(arguments);
  return parseControlArguments(words);
}

TEST(ControlCommandLine, ReadsACommandWithItsOptionsInAnyOrder) {
  for (const auto& request :
       {parsed({"status", "--json", "--start"}), parsed({"--start", "--json", "status"})}) {
    ASSERT_TRUE(request.command) << request.error;
    EXPECT_EQ(request.command->verb, Verb::status);
    EXPECT_TRUE(request.command->isJson);
    EXPECT_TRUE(request.command->starts);
  }
}

TEST(ControlCommandLine, StartsNothingUnlessAsked) {
  for (const auto* const verb : {"status", "follow", "processes", "speedtest", "quit"}) {
    const auto request = parsed({verb});
    ASSERT_TRUE(request.command) << verb;
    EXPECT_FALSE(request.command->starts);
  }
}

TEST(ControlCommandLine, ReadsAFormatInBothForms) {
  EXPECT_EQ(parsed({"follow"}).command->format, FollowFormat::plain);
  EXPECT_EQ(parsed({"follow", "--format", "i3bar"}).command->format, FollowFormat::i3bar);
  EXPECT_EQ(parsed({"follow", "--format=waybar"}).command->format, FollowFormat::waybar);
}

TEST(ControlCommandLine, OpensWindowsByTheirMethods) {
  EXPECT_EQ(parsed({"open", "panel"}).command->method, "OpenPanel");
  EXPECT_EQ(parsed({"open", "details"}).command->method, "OpenDetail");
  EXPECT_EQ(parsed({"open", "settings"}).command->method, "OpenSettings");
}

TEST(ControlCommandLine, SaysWhatIsWrong) {
  EXPECT_EQ(parsed({}).error, "a command is missing");
  EXPECT_EQ(parsed({"--json"}).error, "a command is missing");
  EXPECT_EQ(parsed({"stats"}).error, "unknown command \"stats\"");
  EXPECT_EQ(parsed({"--colour"}).error, "unknown option \"--colour\"");
  EXPECT_EQ(parsed({"status", "-x"}).error, "unknown option \"-x\"");
  EXPECT_EQ(parsed({"status", "again"}).error, "unexpected argument \"again\"");
  EXPECT_EQ(parsed({"open"}).error, "the window is missing: panel, details or settings");
  EXPECT_EQ(parsed({"open", "door"}).error, "unknown window \"door\"");
  EXPECT_EQ(parsed({"open", "panel", "panel"}).error, "unexpected argument \"panel\"");
  EXPECT_EQ(parsed({"follow", "--format"}).error, "--format needs a name");
  EXPECT_EQ(parsed({"follow", "--format="}).error, "unknown format \"\"");
  EXPECT_EQ(parsed({"follow", "--json"}).error, "--json does not go with follow");
  EXPECT_EQ(parsed({"status", "--format=json"}).error, "--format does not go with status");
  EXPECT_EQ(parsed({"quit", "--start"}).error, "--start does not go with quit");
}

TEST(ControlCommandLine, HasAHelpForTerminalsOfEightyColumns) {
  std::string_view help = controlUsage();
  while (!help.empty()) {
    const auto end = help.find('\n');
    EXPECT_LE(help.substr(0, end).size(), 80U);
    help.remove_prefix(end == std::string_view::npos ? help.size() : end + 1);
  }
}

} // namespace
} // namespace tidewell
