#include "app/WindowsProcess.h"

#include "platform/linux/loop/EpollLoop.h"
#include "support/LoopRunner.h"
#include "support/StoredFile.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

using Kind = WindowRequest::Kind;

class WindowsProcessTest : public testing::Test {
protected:
  void SetUp() override { ::setenv("TIDEWELL_FAKE_WINDOWS_LOG", log.c_str(), 1); }

  void ask(Kind kind, const std::string& text = {}) { windows->ask({kind, {}, {}, text}); }

  /// What the process was asked, over all its lives.
  [[nodiscard]] std::vector<std::string> asked() const {
    std::vector<std::string> lines;
    std::ifstream file(log);
    for (std::string line; std::getline(file, line);) {
      lines.push_back(line);
    }
    return lines;
  }
  [[nodiscard]] auto timesAsked(const std::string& line) const {
    const auto lines = asked();
    return std::ranges::count(lines, line);
  }
  void waitFor(const std::string& line, int times = 1) {
    const auto ticking = loop.repeat(0.0, 0.005, [] {});
    EXPECT_TRUE(runUntil(loop, [&] { return timesAsked(line) >= times; })) << line;
  }

  TemporaryDirectory directory;
  std::string log = (directory.path() / "log").string();
  std::string resident = "/opt/my programs/tidewell";
  EpollLoop loop;
  std::unique_ptr<WindowsProcess> windows =
      std::make_unique<WindowsProcess>(loop, TIDEWELL_FAKE_WINDOWS, resident);
};

TEST_F(WindowsProcessTest, PassesOnWhatIsAskedInOrder) {
  ask(Kind::panel);
  ask(Kind::detail);
  ask(Kind::copy, "203.0.113.7");
  waitFor("copy - 203.0.113.7");
  EXPECT_EQ(asked(), (std::vector<std::string>{"panel -", "detail -", "copy - 203.0.113.7"}));
}

TEST_F(WindowsProcessTest, TellsTheProcessToEndWithTheProgram) {
  ask(Kind::panel);
  waitFor("panel -");
  windows.reset();
  waitFor("quit -");
}

TEST_F(WindowsProcessTest, OpensAgainWhatWasOpenInAProcessThatCrashed) {
  ask(Kind::panel);
  ask(Kind::detail);
  ask(Kind::copy, "crash");
  waitFor("detail -", 2);
  EXPECT_EQ(timesAsked("panel -"), 2);
  EXPECT_EQ(timesAsked("copy - crash"), 1) << "it was taken";
}

TEST_F(WindowsProcessTest, DoesNotOpenAgainWhatTheUserHadClosed) {
  ask(Kind::panel);
  ask(Kind::copy, "close");
  ask(Kind::copy, "crash");
  waitFor("copy - crash");
  ask(Kind::detail);
  waitFor("detail -");
  EXPECT_EQ(timesAsked("panel -"), 1);
}

TEST_F(WindowsProcessTest, AsksAnewWhatWasOnItsWayWhenTheProcessLeft) {
  ask(Kind::copy, "leave without taking it");
  ASSERT_TRUE(runUntil(loop, [this] { return !windows->isRunning(); }));
  EXPECT_EQ(timesAsked("copy - leave without taking it"), 4);
}

TEST_F(WindowsProcessTest, GivesUpOnAProcessThatOnlyCrashes) {
  ask(Kind::panel);
  ask(Kind::copy, "crash without taking it");
  ASSERT_TRUE(runUntil(loop, [this] { return !windows->isRunning(); }));
  EXPECT_EQ(timesAsked("panel -"), 4);
  ask(Kind::detail);
  waitFor("detail -");
  EXPECT_EQ(timesAsked("panel -"), 4);
}

TEST_F(WindowsProcessTest, ForgetsTheWindowsOfAProcessThatLeftInOrder) {
  ask(Kind::panel);
  ask(Kind::copy, "leave");
  waitFor("copy - leave");
  ask(Kind::detail);
  waitFor("detail -");
  EXPECT_EQ(timesAsked("panel -"), 1);
}

TEST_F(WindowsProcessTest, KillsAProcessThatHangsAndStartsAnother) {
  windows = std::make_unique<WindowsProcess>(loop, TIDEWELL_FAKE_WINDOWS, resident, 0.2);
  ask(Kind::panel);
  ask(Kind::copy, "hang");
  waitFor("panel -", 2);
}

TEST_F(WindowsProcessTest, KillsAProcessThatHangsAlsoWhileTheUserGoesOnAsking) {
  windows = std::make_unique<WindowsProcess>(loop, TIDEWELL_FAKE_WINDOWS, resident, 0.3);
  ask(Kind::panel);
  ask(Kind::copy, "hang");
  const auto impatience = loop.repeat(0.1, 0.1, [this] { ask(Kind::detail); });
  waitFor("panel -", 2);
}

TEST_F(WindowsProcessTest, LosesNoKindOfRequestHoweverManyWaitAndKillsNoHealthyProcess) {
  const Seconds limit = 0.5;
  windows = std::make_unique<WindowsProcess>(loop, TIDEWELL_FAKE_WINDOWS, resident, limit);
  ask(Kind::panel);
  for (int call = 0; call < 300; ++call) { // more than the socket holds
    ask(Kind::detail);
  }
  ask(Kind::copy, "the first");
  ask(Kind::copy, "the last");
  waitFor("copy - the last");
  EXPECT_EQ(timesAsked("copy - the first"), 0);
  EXPECT_EQ(asked().back(), "copy - the last");
  const auto end = loop.repeat(3 * limit, 0.0, [this] { loop.quit(); });
  loop.run();
  EXPECT_TRUE(windows->isRunning());
  EXPECT_EQ(timesAsked("panel -"), 1) << "it was killed and started again";
}

TEST_F(WindowsProcessTest, OpensTheWindowsAgainWhenManyRequestsWaitAtACrash) {
  ask(Kind::settings);
  waitFor("settings -");
  ask(Kind::copy, "crash without taking it");
  for (int call = 0; call < 300; ++call) {
    ask(Kind::detail);
  }
  ask(Kind::panel);
  ASSERT_TRUE(runUntil(loop, [this] { return !windows->isRunning(); }));
  EXPECT_EQ(timesAsked("settings -"), 4);
}

TEST_F(WindowsProcessTest, TellsTheProcessWhoStartedItAndSharesItsOutput) {
  testing::internal::CaptureStdout();
  ask(Kind::copy, "print the argument");
  ask(Kind::panel);
  waitFor("panel -");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "--resident=/opt/my programs/tidewell\n");
}

TEST_F(WindowsProcessTest, GivesTheProcessAnOutputWhenItHasNone) {
  const FileDescriptor output(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
  ::close(STDOUT_FILENO);
  ask(Kind::copy, "name the output");
  waitFor("/dev/null");
  windows.reset(); // its socket may have the number of the output
  ::dup2(output.get(), STDOUT_FILENO);
}

TEST_F(WindowsProcessTest, DoesNothingWithoutTheProgram) {
  windows = std::make_unique<WindowsProcess>(loop, (directory.path() / "none").string(), resident);
  ask(Kind::panel);
  ask(Kind::detail);
  EXPECT_TRUE(asked().empty());
}

TEST_F(WindowsProcessTest, DoesNotStandInTheWayOfAProgramThatEndsWhileTheProcessHangs) {
  ask(Kind::copy, "hang");
  waitFor("copy - hang");
  windows.reset();
}

} // namespace
} // namespace tidewell::test
