#include "platform/linux/bus/LoginSession.h"
#include "platform/linux/loop/EpollLoop.h"

#include "support/LoopRunner.h"
#include "support/ScarceDescriptors.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace tidewell::test {
namespace {

class LoginSessionTest : public testing::Test {
protected:
  void write(const std::string& state) const {
    writeByRenaming(directory / "7", state); // as the login manager does
  }
  void runFor(double seconds) {
    loop.postAfter(seconds, [this] { loop.quit(); });
    loop.run();
  }
  LoginSession session(const std::string& name) {
    return {loop, name, directory.path().string(),
            [this](const std::string&) {
              ++looks;
              const std::string state = contentsOf(directory / "7");
              return isReadable ? std::optional(state.empty() || state == "closing") : std::nullopt;
            },
            [this] { ++ends; }};
  }

  TemporaryDirectory directory;
  EpollLoop loop;
  bool isReadable = true;
  int looks = 0;
  int ends = 0;
};

TEST_F(LoginSessionTest, IsNotOverWhileItsRecordChangesOtherwise) {
  write("active");
  const LoginSession watched = session("7");
  write("online");
  runFor(0.05);
  EXPECT_EQ(ends, 0);
}

TEST_F(LoginSessionTest, IsOverWhenItCloses) {
  write("active");
  const LoginSession watched = session("7");
  write("online");
  runFor(0.05);
  write("closing");
  runFor(0.05);
  EXPECT_GE(ends, 1);
}

TEST_F(LoginSessionTest, IsOverWhenItsRecordIsGone) {
  write("active");
  const LoginSession watched = session("7");
  std::filesystem::remove(directory / "7");
  runFor(0.05);
  EXPECT_GE(ends, 1);
}

TEST_F(LoginSessionTest, IsNotOverWhileItsRecordCannotBeRead) {
  write("active");
  const LoginSession watched = session("7");
  isReadable = false;
  write("online");
  EXPECT_TRUE(runUntil(loop, [this] { return looks >= 4; })) << "two at the start";
  EXPECT_EQ(ends, 0);
  isReadable = true;
  runFor(1.5);
  const int afterwards = looks;
  runFor(1.5);
  EXPECT_EQ(looks, afterwards) << "a readable record is read again only when it changes";
  EXPECT_EQ(ends, 0);
}

TEST_F(LoginSessionTest, IsOverOnceARecordOfItsEndCanBeRead) {
  write("active");
  const LoginSession watched = session("7");
  isReadable = false;
  write("closing");
  runFor(0.05);
  EXPECT_EQ(ends, 0);
  isReadable = true;
  EXPECT_TRUE(runUntil(loop, [this] { return ends > 0; }));
}

TEST(HasSessionEnded, IsUnknownWithoutFileDescriptors) {
  const std::string noSession = "ofNobody";
  EXPECT_EQ(hasSessionEnded(noSession), true);
  const ScarceDescriptors scarce;
  EXPECT_EQ(hasSessionEnded(noSession), std::nullopt);
}

TEST_F(LoginSessionTest, IsNotFollowedWhenItIsOverAtTheStart) {
  write("closing");
  const LoginSession watched = session("7");
  std::filesystem::remove(directory / "7");
  runFor(0.05);
  EXPECT_EQ(ends, 0);
}

TEST_F(LoginSessionTest, IsNotLookedForOutsideOfTheRecords) {
  for (const char* name : {"", "../7", "a/7"}) {
    const LoginSession watched = session(name);
    write("active");
    runFor(0.01);
  }
  EXPECT_EQ(ends, 0);
}

} // namespace
} // namespace tidewell::test
