#include "ScarceMemory.h"

#include "base/IfMemoryAllows.h"
#include "connectivity/ConnectionDetails.h"
#include "platform/Platform.h"
#include "platform/linux/process/LinuxChildProcess.h"
#include "platform/linux/process/LinuxHttpClient.h"
#include "platform/linux/process/SpawnedChild.h"
#include "processes/ProcessTracker.h"
#include "speedtest/SpeedTestRunner.h"
#include "support/ChildExit.h"
#include "support/FakeMachine.h"
#include "support/LoopRunner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <sys/wait.h>

namespace tidewell::test {
namespace {

// Longer than what a string stores without allocating.
const std::string longText(100, 'x');

/// Repeats the work with one more allocation each time until it succeeds. Returns how often it
/// failed.
int shortages(const std::function<void(bool isShort)>& check, const std::function<void()>& work) {
  int count = 0;
  for (long first = 1;; ++first) {
    {
      const ScarceMemory scarcity(first);
      work();
    }
    const bool isShort = ScarceMemory::hasRefused();
    check(isShort);
    if (!isShort || testing::Test::HasFailure()) {
      return count;
    }
    ++count;
  }
}

long openDescriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

void expectNoChildLeft() {
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(ScarceMemoryTest, TellsWhetherThereWasEnough) {
  EXPECT_TRUE(ifMemoryAllows([] {}));
  const ScarceMemory scarcity(1);
  EXPECT_FALSE(ifMemoryAllows([] { static_cast<void>(std::string(longText)); }));
}

TEST(ScarceMemoryTest, AChildThatCannotBeStartedIsNone) {
  EpollLoop loop;
  const std::vector<std::string> arguments = {"-c", "printf '%s' " + longText};
  const std::string shell = "/bin/sh";
  const long before = openDescriptors();
  std::unique_ptr<SpawnedChild> child;
  const auto start = [&] { child = SpawnedChild::start(loop, shell, arguments, 15.0); };
  const auto check = [&](bool isShort) {
    EXPECT_EQ(child == nullptr, isShort);
    child.reset();
    expectNoChildLeft();
    EXPECT_EQ(openDescriptors(), before);
  };
  EXPECT_GT(shortages(check, start), 5);
}

TEST(ScarceMemoryTest, OutputThatMemoryDoesNotSufficeForIsNone) {
  EpollLoop loop;
  const auto child = SpawnedChild::start(loop, "/bin/echo", {longText}, 15.0);
  EXPECT_TRUE(awaited(loop, exitOf(*child)));
  const ScarceMemory scarcity(1);
  EXPECT_EQ(child->output(), std::nullopt);
}

TEST(ScarceMemoryTest, AToolThatMemoryDoesNotSufficeForIsReapedAllTheSame) {
  EpollLoop loop;
  LinuxChildProcess children(loop);
  const std::function<void(ChildProcess::Id)> launched = [](ChildProcess::Id) {
    throw std::bad_alloc(); // like a watchdog that cannot be posted
  };
  const long before = openDescriptors();
  static_cast<void>(awaited(loop, children.run({Tool::ping, "-h", 1.0}, launched)));
  expectNoChildLeft();
  EXPECT_EQ(openDescriptors(), before);
}

TEST(ScarceMemoryTest, ALookupThatMemoryDoesNotSufficeForHasNoAnswer) {
  EpollLoop loop;
  LinuxHttpClient http(loop, "/bin/echo");
  for (long first = 1;; ++first) {
    std::optional<std::optional<std::string>> body;
    Async<> work = store(http.get(longText, 15.0), &body);
    {
      const ScarceMemory scarcity(first);
      work.start(nullptr);
    }
    if (!ScarceMemory::hasRefused()) {
      EXPECT_TRUE(runUntil(loop, [&] { return work.isDone(); }));
      ASSERT_TRUE(body);
      EXPECT_EQ(*body, longText + "\n");
      EXPECT_GT(first, 5);
      break;
    }
    ASSERT_TRUE(work.isDone());
    ASSERT_TRUE(body);
    EXPECT_EQ(*body, std::nullopt);
    expectNoChildLeft();
  }
}

// Little memory for a text, much for its parsed lines.
const std::string manyLines(5000, '\n');
constexpr std::size_t largest = 8192;

TEST(ScarceMemoryTest, AListOfProgramsThatMemoryDoesNotSufficeForIsEmpty) {
  FakeMachine machine;
  machine.children.usual = {"header\nbrowser.812,5,6,\n" + manyLines, 0.0};
  const auto tracker = std::make_shared<ProcessTracker>(machine.platform);
  tracker->start(10.0);
  machine.scheduler.advance(3.0);
  EXPECT_EQ(tracker->processes.get().size(), 1U);
  {
    const SmallPiecesOnly scarcity(largest);
    machine.scheduler.advance(10.0);
  }
  EXPECT_TRUE(tracker->processes.get().empty());
  machine.scheduler.advance(10.0);
  EXPECT_EQ(tracker->processes.get().size(), 1U);
}

TEST(ScarceMemoryTest, ASpeedTestThatMemoryDoesNotSufficeForHasNoResult) {
  FakeMachine machine;
  machine.children.usual = {"Downlink capacity: 9 Mbps\n" + manyLines, 0.0};
  const auto test = std::make_shared<SpeedTestRunner>(machine.platform);
  test->run();
  machine.scheduler.settle();
  EXPECT_TRUE(test->lastResult.get());
  {
    const SmallPiecesOnly scarcity(largest);
    test->run();
    machine.scheduler.settle();
  }
  EXPECT_FALSE(test->lastResult.get());
  EXPECT_FALSE(test->isRunning.get());
}

/// Answers with as much as memory just suffices for.
class LastPiece final : public HttpClient {
public:
  [[nodiscard]] Async<std::optional<std::string>> get(std::string /*url*/,
                                                      Seconds /*wait*/) override {
    std::string body(largest + 1, '1');
    if (isLast) {
      scarcity.emplace(largest);
    }
    co_return body;
  }

  bool isLast = false;
  std::optional<SmallPiecesOnly> scarcity;
};

TEST(ScarceMemoryTest, AnAddressThatMemoryDoesNotSufficeForIsNotKnown) {
  FakeMachine machine;
  LastPiece http;
  const Platform platform{
      machine.scheduler, machine.clock, machine.counters, machine.configuration, machine.addresses,
      machine.paths,     http,          machine.children};
  ConnectionDetails details(platform);
  const auto address = [&] {
    auto info = awaited(details.fetchConnectionInfo(ConnectionInfo::InterfaceType::wifi),
                        [&] { machine.scheduler.settle(); });
    http.scarcity.reset();
    return info.publicIP;
  };
  EXPECT_EQ(address().size(), largest + 1);
  http.isLast = true;
  EXPECT_EQ(address(), "--");
}

} // namespace
} // namespace tidewell::test
