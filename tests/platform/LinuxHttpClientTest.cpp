#include "platform/linux/process/LinuxHttpClient.h"

#include "platform/linux/process/HelperProgram.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace tidewell::test {
namespace {

class LinuxHttpClientTest : public testing::Test {
protected:
  LinuxHttpClient make(const std::string& script) {
    const auto helper = directory / "helper";
    writeInPlace(helper, "#!/bin/sh\n" + script);
    std::filesystem::permissions(helper, std::filesystem::perms::owner_all);
    return LinuxHttpClient(helper);
  }
  static double secondsOf(const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  }

  TemporaryDirectory directory;
};

TEST_F(LinuxHttpClientTest, GivesWhatTheHelperPrintedWhenItSucceeds) {
  EXPECT_EQ(make("echo \"$#: $1\"").get("https://example.org/", 10.0), "1: https://example.org/\n");
  EXPECT_EQ(make("true").get("https://example.org/", 10.0), "");
}

TEST_F(LinuxHttpClientTest, GivesNothingWhenTheHelperFails) {
  EXPECT_EQ(make("echo 203.0.113.7; exit 1").get("", 10.0), std::nullopt);
  EXPECT_EQ(make("echo 203.0.113.7; kill -9 $$").get("", 10.0), std::nullopt);
  EXPECT_EQ(LinuxHttpClient("/nonexistent/helper").get("", 10.0), std::nullopt);
}

TEST_F(LinuxHttpClientTest, EndsAHelperWhoseTimeIsOver) {
  auto client = make("echo 203.0.113.7; exec sleep 100");
  EXPECT_LT(secondsOf([&] { EXPECT_EQ(client.get("", 0.2), std::nullopt); }), 5.0);
}

TEST_F(LinuxHttpClientTest, AnswersAtOnceWhileThereIsNoPath) {
  auto client = make("touch \"$0.ran\"");
  client.setPathSatisfied(false);
  client.setPathSatisfied(false);
  EXPECT_EQ(client.get("", 10.0), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(directory / "helper.ran"));
  client.setPathSatisfied(true);
  EXPECT_EQ(client.get("", 10.0), "");
}

TEST_F(LinuxHttpClientTest, AbandonsARequestWhenThePathIsLost) {
  auto client = make("exec sleep 100");
  std::thread loser([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    client.setPathSatisfied(false);
  });
  EXPECT_LT(secondsOf([&] { EXPECT_EQ(client.get("", 60.0), std::nullopt); }), 5.0);
  loser.join();
}

TEST_F(LinuxHttpClientTest, RefusesEveryRequestOnceTheProgramEnds) {
  auto client = make("true");
  client.endAll();
  client.setPathSatisfied(true);
  EXPECT_EQ(client.get("", 10.0), std::nullopt);
}

TEST(HelperProgram, LiesBesideTheDirectoryOfTheProgram) {
  EXPECT_EQ(helperProgram("/usr/bin/tidewell", "publicAddress"),
            "/usr/libexec/tidewell/publicAddress");
  EXPECT_EQ(helperProgram("/bin/tidewell", "nettop"), "/libexec/tidewell/nettop");
}

} // namespace
} // namespace tidewell::test
