#include "platform/linux/process/NotificationSound.h"

#include "base/TaskQueue.h"
#include "support/LoopRunner.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include <sys/stat.h>

namespace tidewell::test {
namespace {

class NotificationSoundTest : public testing::Test {
protected:
  /// A helper that writes a line, then does what the test says.
  std::string helper(const std::string& after = "") {
    const auto file = directory / "helper";
    writeInPlace(file, "#!/bin/sh\necho played >>" + played.string() + "\n" + after + "\n");
    ::chmod(file.c_str(), 0755);
    return file;
  }
  bool waitForText(const std::string& text) {
    const auto timer = loop.repeat(0.01, 0.01, [] {});
    return runUntil(loop, [&] { return contentsOf(played) == text; });
  }

  TemporaryDirectory directory;
  std::filesystem::path played = directory / "played";
  EpollLoop loop;
};

TEST_F(NotificationSoundTest, IsPlayedOncePerCall) {
  LoopScheduler scheduler(loop);
  NotificationSound sound(loop, scheduler.background(), helper());
  sound.play();
  EXPECT_TRUE(waitForText("played\n"));
  sound.play();
  EXPECT_TRUE(waitForText("played\nplayed\n"));
}

TEST_F(NotificationSoundTest, IsSilentWithoutAHelper) {
  LoopScheduler scheduler(loop);
  NotificationSound missing(loop, scheduler.background(), directory / "missing");
  missing.play();
  NotificationSound sound(loop, scheduler.background(), helper());
  sound.play();
  EXPECT_TRUE(waitForText("played\n"));
}

TEST_F(NotificationSoundTest, DoesNotHinderTheEnd) {
  const auto begin = std::chrono::steady_clock::now();
  {
    LoopScheduler scheduler(loop);
    NotificationSound sound(loop, scheduler.background(), helper("exec sleep 7"));
    sound.play();
    EXPECT_TRUE(waitForText("played\n"));
    sound.play();
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(3));
}

} // namespace
} // namespace tidewell::test
