#include "platform/linux/process/SpawnedChild.h"

#include "platform/linux/process/LinuxChildProcess.h"
#include "platform/linux/process/SystemTools.h"
#include "support/ChildExit.h"
#include "support/LoopRunner.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace tidewell::test {
namespace {

class SpawnedChildTest : public testing::Test {
protected:
  EpollLoop loop;

  std::unique_ptr<SpawnedChild> start(const std::string& executable,
                                      const std::vector<std::string>& arguments = {},
                                      Seconds limit = 15.0) {
    return SpawnedChild::start(loop, executable, arguments, limit);
  }
  std::string shell(const std::string& script, Seconds limit = 15.0) {
    const auto child = start("/bin/sh", {"-c", script}, limit);
    EXPECT_TRUE(child);
    wait(*child);
    return child->output().value_or("(no memory)");
  }
  void wait(SpawnedChild& child) { EXPECT_TRUE(awaited(loop, exitOf(child))); }
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
                  "grep -E 'eventpoll|timerfd|pidfd' ;; esac; done"),
            "");
}

TEST_F(SpawnedChildTest, CannotStartWhatIsNotThere) {
  EXPECT_FALSE(start("/nonexistent/tool"));
  EXPECT_FALSE(start("/etc/passwd"));
}

TEST_F(SpawnedChildTest, HasNoOutputOfAFileThatIsNoProgram) {
  const TemporaryDirectory directory;
  const std::string file = directory / "tool";
  writeInPlace(file, "nothing that runs\n");
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  const auto child = start(file);
  ASSERT_TRUE(child);
  wait(*child);
  EXPECT_EQ(child->status(), 127);
  EXPECT_FALSE(child->output());
}

TEST_F(SpawnedChildTest, ResetsIgnoredSignalsAndKeepsItsOwn) {
  const auto before = ::signal(SIGUSR1, SIG_IGN);
  EXPECT_EQ(shell("grep SigIgn /proc/self/status"), "SigIgn:\t0000000000000000\n");
  EXPECT_EQ(::signal(SIGUSR1, before), SIG_IGN);
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
    EXPECT_FALSE(start("/nonexistent/tool"));
  }
  EXPECT_EQ(openFiles(), before);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child is left to wait for";
}

TEST_F(SpawnedChildTest, EndsAChildWhoseOwnerIsGone) {
  auto child = start("/bin/sh", {"-c", "trap '' TERM; while :; do sleep 1; done"});
  ASSERT_TRUE(child);
  const pid_t pid = child->id();
  EXPECT_LT(secondsOf([&] { child.reset(); }), 5.0);
  EXPECT_EQ(::kill(pid, 0), -1);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child is left to wait for";
}

TEST_F(SpawnedChildTest, YieldsToOthersWhenNobodyWaitsForIt) {
  const auto nice = [this](ChildPriority priority) {
    const auto child =
        SpawnedChild::start(loop, "/bin/sh", {"-c", "sleep 0.1; nice"}, 15.0, priority);
    wait(*child);
    return std::stoi(child->output().value_or("-1"));
  };
  EXPECT_EQ(nice(ChildPriority::utility), nice(ChildPriority::normal) + 5);
}

/// Prevents the process from opening descriptors.
class NoDescriptors {
public:
  NoDescriptors() {
    ::getrlimit(RLIMIT_NOFILE, &m_before);
    const int next = ::dup(0);
    ::close(next);
    const rlimit none{static_cast<rlim_t>(next), m_before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
  }
  NoDescriptors(NoDescriptors&&) = delete;
  ~NoDescriptors() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

private:
  rlimit m_before{};
};

TEST_F(SpawnedChildTest, StartsNothingWithoutDescriptorsAndSomethingAfterwards) {
  {
    const NoDescriptors none;
    EXPECT_FALSE(start("/bin/true"));
  }
  EXPECT_EQ(shell("echo again"), "again\n");
}

/// A loop that cannot watch anything.
class BlindLoop final : public EventLoop {
public:
  explicit BlindLoop(EpollLoop& loop) : m_loop(loop) {}
  void post(Task task) override { m_loop.post(std::move(task)); }
  void postAfter(Seconds delay, Task task) override { m_loop.postAfter(delay, std::move(task)); }
  std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    return m_loop.repeat(first, period, std::move(task));
  }
  std::unique_ptr<FdWatch> watch(int, std::uint32_t, FdHandler) override { return nullptr; }
  Subscription beforeSleep(std::function<void()> function) override {
    return m_loop.beforeSleep(std::move(function));
  }

private:
  EpollLoop& m_loop;
};

TEST_F(SpawnedChildTest, EndsAChildAtItsLimitWhereItCannotBeWatched) {
  BlindLoop blind(loop);
  for (const char* script : {"echo done", "echo done; exec sleep 100"}) {
    const auto child = SpawnedChild::start(blind, "/bin/sh", {"-c", script}, 0.2);
    EXPECT_LT(secondsOf([&] { wait(*child); }), 10.0);
    EXPECT_EQ(child->output(), "done\n");
  }
}

class LinuxChildProcessTest : public SpawnedChildTest {
protected:
  LinuxChildProcess children{loop};
};

TEST_F(LinuxChildProcessTest, RunsPing) {
  const ToolCall ping{Tool::ping, "127.0.0.1", 1.0};
  if (!commandOf(ping)) {
    GTEST_SKIP() << "no ping is installed here";
  }
  ChildProcess::Id launched = 0;
  const auto output =
      awaited(loop, children.run(ping, [&](ChildProcess::Id child) { launched = child; }));
  EXPECT_NE(output.value_or("").find("127.0.0.1"), std::string::npos);
  EXPECT_GT(launched, 0);
  children.terminate(launched); // exited long ago
}

TEST_F(LinuxChildProcessTest, TerminatesAToolOnRequest) {
  std::optional<std::string> output;
  const auto run = [&] {
    output = awaited(loop, children.run({Tool::lineTest, {}, 0.0}, [&](ChildProcess::Id child) {
      loop.post([this, child] { children.terminate(child); });
    }));
  };
  EXPECT_LT(secondsOf(run), 10.0);
  EXPECT_TRUE(output);
}

TEST_F(LinuxChildProcessTest, EndsAToolWhoseWaiterIsGone) {
  pid_t pid = 0;
  std::optional<std::optional<std::string>> output;
  {
    Async<> run =
        store(children.run({Tool::lineTest, {}, 0.0},
                           [&](ChildProcess::Id child) { pid = static_cast<pid_t>(child); }),
              &output);
    run.start([] {});
    ASSERT_GT(pid, 0);
    EXPECT_EQ(::kill(pid, 0), 0);
  }
  EXPECT_EQ(::kill(pid, 0), -1);
  EXPECT_FALSE(output);
  children.terminate(pid);
}

} // namespace
} // namespace tidewell::test
