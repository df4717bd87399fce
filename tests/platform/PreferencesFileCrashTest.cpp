// Writers that are killed, and writers that write at the same time.

#include "platform/linux/PreferencesStorage.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <random>
#include <string>
#include <thread>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

using Outcome = PreferencesStorage::Reading::Outcome;

template <class F> pid_t inChild(F&& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::_exit(work() ? 0 : 1);
  }
  return child;
}

int statusOf(pid_t child) {
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return status;
}

std::int64_t numberIn(const PreferencesStorage& storage) {
  const auto reading = storage.read();
  EXPECT_EQ(reading.outcome, Outcome::intact);
  EXPECT_EQ(reading.values.at("other"), DefaultsValue(true));
  return asExactly<std::int64_t>(reading.values.at("number")).value_or(-1);
}

// Writes ever higher numbers until it is killed.
bool writeForEver(const PreferencesStorage& storage) {
  for (std::int64_t number = numberIn(storage) + 1; storage.write({{"number", number}}, {});) {
    ++number;
  }
  return false;
}

TEST(PreferencesFileCrash, AWriterKilledAtAnyMomentLeavesTheOldFileOrTheNew) {
  const TemporaryDirectory directory;
  const PreferencesStorage storage((directory / "preferences.toml").string());
  // Large enough that a write takes its time.
  writeInPlace(directory / "preferences.toml",
               "number = 0\nother = true\n#" + std::string(20'000, 'x') + "\n");
  std::mt19937 random(1);
  std::uniform_int_distribution<int> microseconds(0, 25'000);
  std::int64_t last = 0;
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  const auto hasRun = [&](int seconds) {
    return Clock::now() - start > std::chrono::seconds(seconds);
  };
  // On a slow machine few writers live long enough to write at all.
  while (!hasRun(2) || (last <= 10 && !hasRun(30))) {
    const pid_t writer = inChild([&] { return writeForEver(storage); });
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
    ASSERT_EQ(::kill(writer, SIGKILL), 0);
    const int status = statusOf(writer);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    const std::int64_t number = numberIn(storage);
    ASSERT_GE(number, last);
    last = number;
  }
  EXPECT_GT(last, 10);
  EXPECT_TRUE(storage.write({{"number", std::int64_t{0}}}, {}));
  EXPECT_EQ(filesNamed(directory.path(), "").size(), 1U);
}

TEST(PreferencesFileCrash, WritersInSeveralProcessesLoseNoKey) {
  constexpr int writers = 3;
  constexpr std::int64_t keys = 40;
  const TemporaryDirectory directory;
  const PreferencesStorage storage((directory / "preferences.toml").string());
  std::vector<pid_t> children;
  for (int writer = 0; writer < writers; ++writer) {
    children.push_back(inChild([&storage, writer] {
      bool succeeded = true;
      for (std::int64_t key = 0; key < keys; ++key) {
        const std::string name = "w" + std::to_string(writer) + "-" + std::to_string(key);
        succeeded = storage.write({{name, key}}, {}).has_value() && succeeded;
      }
      return succeeded;
    }));
  }
  for (const pid_t child : children) {
    EXPECT_EQ(statusOf(child), 0);
  }
  const auto reading = storage.read();
  EXPECT_EQ(reading.outcome, Outcome::intact);
  EXPECT_EQ(reading.values.size(), static_cast<std::size_t>(writers * keys));
}

} // namespace
} // namespace tidewell::test
