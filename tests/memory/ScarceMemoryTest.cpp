#include "ScarceMemory.h"

#include "base/IfMemoryAllows.h"
#include "base/Service.h"
#include "connectivity/ConnectionDetails.h"
#include "platform/Platform.h"
#include "platform/linux/process/LinuxChildProcess.h"
#include "platform/linux/process/LinuxHttpClient.h"
#include "platform/linux/process/SpawnedChild.h"
#include "processes/ProcessTracker.h"
#include "speedtest/SpeedTestRunner.h"
#include "support/FakeMachine.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <sys/eventfd.h>
#include <sys/wait.h>

namespace tidewell::test {
namespace {

// Longer than what a text has room for without memory of its own.
const std::string longText(100, 'x');

/// Does the work with a little more memory each time until there is enough; how often there was too
/// little.
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

TEST(ScarceMemoryTest, AChildThatCannotBeStartedOrHeardIsNone) {
  const FileDescriptor never(::eventfd(0, EFD_CLOEXEC));
  const std::vector<std::string> arguments = {"-c", "printf '%s' " + longText};
  const std::string shell = "/bin/sh";
  std::optional<std::string> output;
  const long before = openDescriptors();
  const auto run = [&] {
    output.reset();
    if (auto child = SpawnedChild::start(shell, arguments)) {
      child->wait(20.0, never);
      child->reap();
      output = child->output();
    }
  };
  const auto check = [&](bool isShort) {
    EXPECT_EQ(output, isShort ? std::nullopt : std::optional(longText));
    expectNoChildLeft();
    EXPECT_EQ(openDescriptors(), before);
  };
  EXPECT_GT(shortages(check, run), 5);
}

TEST(ScarceMemoryTest, AToolThatMemoryDoesNotSufficeForIsReapedAllTheSame) {
  LinuxChildProcess children;
  const std::string ping = "/sbin/ping";
  const std::vector<std::string> arguments = {"-h"};
  const std::function<void(ChildProcess::Id)> launched = [](ChildProcess::Id) {
    throw std::bad_alloc(); // as a watchdog that cannot be posted does
  };
  const long before = openDescriptors();
  static_cast<void>(children.run(ping, arguments, launched));
  expectNoChildLeft();
  EXPECT_EQ(openDescriptors(), before);
}

TEST(ScarceMemoryTest, ALookupThatMemoryDoesNotSufficeForHasNoAnswer) {
  LinuxHttpClient http("/bin/echo");
  std::optional<std::string> body;
  const auto get = [&] { body = http.get(longText, 20.0); };
  const auto check = [&](bool isShort) {
    EXPECT_EQ(body, isShort ? std::nullopt : std::optional(longText + "\n"));
    expectNoChildLeft();
  };
  EXPECT_GT(shortages(check, get), 5);
}

// Little for a text, much for what is made of its lines.
const std::string manyLines(5000, '\n');
constexpr std::size_t largest = 8192;

TEST(ScarceMemoryTest, AListOfProgramsThatMemoryDoesNotSufficeForIsEmpty) {
  FakeMachine machine;
  machine.children.usual = {"header\nbrowser.812,5,6,\n" + manyLines, 0.0};
  const auto tracker = makeService<ProcessTracker>(machine.scheduler.main(), machine.platform);
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
  const auto test = makeService<SpeedTestRunner>(machine.scheduler.main(), machine.platform);
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

/// Answers with what there is just memory enough for.
class LastPiece final : public HttpClient {
public:
  [[nodiscard]] std::optional<std::string> get(const std::string& /*url*/,
                                               Seconds /*wait*/) override {
    std::string body(largest + 1, '1');
    if (isLast) {
      scarcity.emplace(largest);
    }
    return body;
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
    auto info = details.fetchConnectionInfo(ConnectionInfo::InterfaceType::wifi);
    http.scarcity.reset();
    return info.publicIP;
  };
  EXPECT_EQ(address().size(), largest + 1);
  http.isLast = true;
  EXPECT_EQ(address(), "--");
}

} // namespace
} // namespace tidewell::test
