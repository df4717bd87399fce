#include "platform/linux/process/LinuxHttpClient.h"

#include "platform/linux/process/HelperProgram.h"
#include "support/LoopRunner.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <utility>
#include <vector>

namespace tidewell::test {
namespace {

class LinuxHttpClientTest : public testing::Test {
protected:
  LinuxHttpClient make(const std::string& script, LinuxHttpClient::Observer observer = {}) {
    const auto helper = directory / "helper";
    writeInPlace(helper, "#!/bin/sh\n" + script);
    std::filesystem::permissions(helper, std::filesystem::perms::owner_all);
    return LinuxHttpClient(loop, helper, std::move(observer));
  }
  std::optional<std::string> get(LinuxHttpClient&& client, const std::string& url) {
    return get(client, url);
  }
  std::optional<std::string> get(LinuxHttpClient& client, const std::string& url,
                                 Seconds wait = 10.0) {
    return awaited(loop, client.get(url, wait));
  }
  static double secondsOf(const auto& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  }

  EpollLoop loop;
  TemporaryDirectory directory;
};

TEST_F(LinuxHttpClientTest, GivesWhatTheHelperPrintedWhenItSucceeds) {
  EXPECT_EQ(get(make("echo \"$#: $1\""), "https://example.org/"), "1: https://example.org/\n");
  EXPECT_EQ(get(make("true"), "https://example.org/"), "");
}

TEST_F(LinuxHttpClientTest, GivesNothingWhenTheHelperFails) {
  EXPECT_EQ(get(make("echo 203.0.113.7; exit 1"), ""), std::nullopt);
  EXPECT_EQ(get(make("echo 203.0.113.7; kill -9 $$"), ""), std::nullopt);
  EXPECT_EQ(get(LinuxHttpClient(loop, "/nonexistent/helper"), ""), std::nullopt);
}

TEST_F(LinuxHttpClientTest, EndsAHelperWhoseTimeIsOver) {
  auto client = make("echo 203.0.113.7; exec sleep 100");
  EXPECT_LT(secondsOf([&] { EXPECT_EQ(get(client, "", 0.2), std::nullopt); }), 5.0);
}

TEST_F(LinuxHttpClientTest, AnswersAtOnceWhileThereIsNoPath) {
  auto client = make("touch \"$0.ran\"");
  client.setPathSatisfied(false);
  client.setPathSatisfied(false);
  EXPECT_EQ(get(client, ""), std::nullopt);
  EXPECT_FALSE(std::filesystem::exists(directory / "helper.ran"));
  client.setPathSatisfied(true);
  EXPECT_EQ(get(client, ""), "");
}

TEST_F(LinuxHttpClientTest, TellsItsObserverEachOutcomeWhileThereIsAPath) {
  std::vector<std::optional<std::string>> outcomes;
  const auto observer = [&](const auto& body) { outcomes.push_back(body); };
  get(make("echo 203.0.113.7", observer), "");
  auto failing = make("exit 1", observer);
  get(failing, "");
  failing.setPathSatisfied(false);
  get(failing, "");
  auto slow = make("exec sleep 100", observer);
  loop.postAfter(0.05, [&] { slow.setPathSatisfied(false); });
  get(slow, "", 60.0);
  EXPECT_EQ(outcomes, (std::vector<std::optional<std::string>>{"203.0.113.7\n", std::nullopt}));
}

TEST_F(LinuxHttpClientTest, AbandonsARequestWhenThePathIsLost) {
  auto client = make("exec sleep 100");
  loop.postAfter(0.05, [&] { client.setPathSatisfied(false); });
  EXPECT_LT(secondsOf([&] { EXPECT_EQ(get(client, "", 60.0), std::nullopt); }), 5.0);
}

TEST(HelperProgram, LiesBesideTheDirectoryOfTheProgram) {
  EXPECT_EQ(helperProgram("/usr/bin/tidewell", "publicAddress"),
            "/usr/libexec/tidewell/publicAddress");
  EXPECT_EQ(helperProgram("/bin/tidewell", "nettop"), "/libexec/tidewell/nettop");
}

TEST(HelperProgram, IsNoneWhileThePathOfTheProgramIsUnknown) {
  for (const char* program : {"", "tidewell", "bin/tidewell", "./bin/tidewell"}) {
    EXPECT_EQ(helperProgram(program, "nettop"), "") << program;
  }
}

} // namespace
} // namespace tidewell::test
