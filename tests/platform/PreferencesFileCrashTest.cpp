// Killed writers, and several writers at the same time.

#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/preferences/PreferencesStorage.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <random>
#include <string>
#include <thread>
#include <vector>

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
  EXPECT_EQ(reading.values.at("other"), PreferenceValue(true));
  return as<std::int64_t>(reading.values.at("number")).value_or(-1);
}

using Clock = std::chrono::steady_clock;

// Writes ever higher numbers until it is killed. Signals when it begins.
class EndlessWriter {
public:
  explicit EndlessWriter(const PreferencesStorage& storage) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    const FileDescriptor readEnd(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    m_child = inChild([&] {
      std::int64_t number = numberIn(storage) + 1;
      bool succeeded = ::write(writeEnd.get(), "!", 1) == 1;
      for (; succeeded; ++number) {
        succeeded = !storage.write({{"number", number}}, {}).error;
      }
      return false;
    });
    char begun = 0;
    EXPECT_EQ(::read(readEnd.get(), &begun, 1), 1);
  }

  // Whether it was still alive.
  [[nodiscard]] bool kill() const {
    EXPECT_EQ(::kill(m_child, SIGKILL), 0);
    const int status = statusOf(m_child);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  }

private:
  pid_t m_child = -1;
};

TEST(PreferencesFileCrash, AWriterKilledAtAnyMomentLeavesTheOldFileOrTheNew) {
  const TemporaryDirectory directory;
  const PreferencesStorage storage((directory / "preferences.toml").string());
  // Large, so that a write takes some time.
  writeInPlace(directory / "preferences.toml",
               "number = 0\nother = true\n#" + std::string(20'000, 'x') + "\n");
  const auto start = Clock::now();
  ASSERT_FALSE(storage.write({{"number", std::int64_t{1}}}, {}).error);
  const auto oneWrite = Clock::now() - start;

  std::mt19937 random(std::random_device{}());
  std::uniform_real_distribution<double> lifeInWrites(0.0, 4.0);
  std::int64_t last = 1;
  constexpr std::int64_t some = 10; // on a machine that is busy they take longer
  const auto isOver = [&](auto span) { return Clock::now() - start >= span; };
  while (!isOver(std::chrono::seconds(2)) || (last <= some && !isOver(std::chrono::minutes(1)))) {
    const EndlessWriter writer(storage);
    std::this_thread::sleep_for(oneWrite * lifeInWrites(random));
    ASSERT_TRUE(writer.kill());
    const std::int64_t number = numberIn(storage);
    ASSERT_GE(number, last);
    last = number;
  }
  EXPECT_GT(last, some);
  EXPECT_FALSE(storage.write({{"number", std::int64_t{0}}}, {}).error);
  EXPECT_EQ(filesNamed(directory.path(), "").size(), 1U);
}

TEST(PreferencesFileCrash, WritersInSeveralProcessesLoseNoKey) {
  constexpr int writers = 3;
  constexpr std::int64_t keys = 40;
  const TemporaryDirectory directory;
  const PreferencesStorage storage((directory / "preferences.toml").string());
  std::vector<pid_t> children;
  children.reserve(writers);
  for (int writer = 0; writer < writers; ++writer) {
    children.push_back(inChild([&storage, writer] {
      bool succeeded = true;
      for (std::int64_t key = 0; key < keys; ++key) {
        const std::string name = "w" + std::to_string(writer) + "-" + std::to_string(key);
        bool written = false;
        for (int attempt = 0; attempt < 20 && !written; ++attempt) {
          written = !storage.write({{name, key}}, {}).error; // refused while others are busy
        }
        succeeded = written && succeeded;
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
