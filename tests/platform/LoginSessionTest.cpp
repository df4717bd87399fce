#include "platform/linux/bus/LoginSession.h"
#include "platform/linux/loop/EpollLoop.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
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
              const std::string state = contentsOf(directory / "7");
              return state.empty() || state == "closing";
            },
            [this] { ++ends; }};
  }

  TemporaryDirectory directory;
  EpollLoop loop;
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
