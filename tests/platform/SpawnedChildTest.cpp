#include "platform/linux/process/SpawnedChild.h"

#include "platform/linux/process/LinuxChildProcess.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

namespace tidewell::test {
namespace {

class SpawnedChildTest : public testing::Test {
protected:
  FileDescriptor never{::eventfd(0, EFD_CLOEXEC)};

  std::string shell(const std::string& script, Seconds limit = 20.0) {
    auto child = SpawnedChild::start("/bin/sh", {"-c", script});
    EXPECT_TRUE(child);
    child->wait(limit, never);
    child->reap();
    return child->output().value_or("(no memory)");
  }
};

double secondsOf(const auto& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST_F(SpawnedChildTest, GivesWhatTheChildWroteWhateverItsExitStatus) {
  EXPECT_EQ(shell("printf 'a\\0b'; exit 3"), std::string("a\0b", 3));
  EXPECT_EQ(shell("kill -9 $$"), "");
}

TEST_F(SpawnedChildTest, KeepsStandardErrorApart) {
  EXPECT_EQ(shell("echo wrong >&2; echo right"), "right\n");
}

TEST_F(SpawnedChildTest, GivesAnEmptyInputAndAnUntranslatedLocale) {
  ::setenv("LC_ALL", "de_DE.UTF-8", 1);
  ::setenv("LANGUAGE", "de", 1);
  EXPECT_EQ(shell("cat; echo $LC_ALL ${LANGUAGE-none}"), "C none\n");
  ::unsetenv("LC_ALL");
  ::unsetenv("LANGUAGE");
}

TEST_F(SpawnedChildTest, HandsDownNoDescriptorsAndNoBlockedSignals) {
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &blocked, &before);
  const std::string mask = shell("grep SigBlk /proc/self/status");
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(mask, "SigBlk:\t0000000000000000\n");
  EXPECT_EQ(shell("for fd in /proc/self/fd/*; do case ${fd##*/} in 0|1|2) ;; *) readlink $fd | "
                  "grep eventfd ;; esac; done"),
            "");
}

TEST_F(SpawnedChildTest, CannotStartWhatIsNotThere) {
  EXPECT_FALSE(SpawnedChild::start("/nonexistent/tool", {}));
  EXPECT_FALSE(SpawnedChild::start("/etc/passwd", {}));
}

TEST_F(SpawnedChildTest, EndsAChildThatOutlivesItsLimit) {
  std::string output;
  EXPECT_LT(secondsOf([&] { output = shell("echo begun; exec sleep 100", 0.1); }), 10.0);
  EXPECT_EQ(output, "begun\n");
}

TEST_F(SpawnedChildTest, KillsAChildThatIgnoresTermination) {
  EXPECT_LT(secondsOf([&] { shell("trap '' TERM; while :; do sleep 1; done", 0.1); }), 10.0);
}

TEST_F(SpawnedChildTest, KeepsWhatFitsThePipeOfAChildThatFloods) {
  const std::string output = shell("yes", 0.2);
  EXPECT_GE(output.size(), 4096U);
  EXPECT_LE(output.size(), 1U << 20U);
}

TEST_F(SpawnedChildTest, DoesNotWaitForADescendantThatHoldsThePipe) {
  std::string output;
  const double seconds = secondsOf([&] { output = shell("sleep 30 & echo $!"); });
  EXPECT_LT(seconds, 10.0);
  ASSERT_FALSE(output.empty());
  ::kill(static_cast<pid_t>(std::stol(output)), SIGKILL);
}

TEST_F(SpawnedChildTest, LeavesNoDescriptorsAndNoChildrenBehind) {
  const auto openFiles = [] {
    std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  };
  shell("true");
  const auto before = openFiles();
  for (int count = 0; count < 20; ++count) {
    shell("true");
    EXPECT_FALSE(SpawnedChild::start("/nonexistent/tool", {}));
  }
  EXPECT_EQ(openFiles(), before);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child is left to wait for";
}

TEST(LinuxChildProcess, StartsNothingThatIsNoTool) {
  LinuxChildProcess children;
  EXPECT_EQ(children.run("/bin/echo", {"hello"}), std::nullopt);
}

TEST(LinuxChildProcess, StartsNothingMoreOnceTheProgramEnds) {
  LinuxChildProcess children;
  children.endAll();
  EXPECT_EQ(children.run("/sbin/ping", {"-c", "1", "-W", "2000", "127.0.0.1"}), std::nullopt);
}

TEST_F(SpawnedChildTest, EndsAChildAsSoonAsTheProgramEnds) {
  const FileDescriptor ending(::eventfd(0, EFD_CLOEXEC));
  std::thread ender([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    const std::uint64_t one = 1;
    EXPECT_EQ(::write(ending.get(), &one, sizeof one), ssize_t{sizeof one});
  });
  auto child = SpawnedChild::start("/bin/sleep", {"100"});
  ASSERT_TRUE(child);
  EXPECT_LT(secondsOf([&] { child->wait(100.0, ending); }), 10.0);
  child->reap();
  ender.join();
}

} // namespace
} // namespace tidewell::test
