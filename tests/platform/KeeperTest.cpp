#include "platform/linux/process/Keeper.h"

#include "platform/linux/loop/FileDescriptor.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <new>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

/// A process that keeps another running. Each run is counted and then does what the test says.
class KeeperTest : public testing::Test {
protected:
  KeeperTest()
      : m_shared(::mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS,
                        -1, 0)),
        runs(*new (m_shared) int(0)) {}
  ~KeeperTest() override { ::munmap(m_shared, sizeof(int)); }

  void keep(const std::function<void()>& work) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    m_reading = FileDescriptor(ends[0]);
    const FileDescriptor writing(ends[1]);
    keeper = ::fork();
    if (keeper == 0) {
      m_reading.reset();
      if (const auto status = keepRunning({0.01, 0.02})) {
        ::_exit(*status);
      }
      ++runs;
      work();
      const bool isSaid = ::write(writing.get(), "!", 1) == 1;
      ::pause();
      ::_exit(isSaid ? EXIT_SUCCESS : EXIT_FAILURE);
    }
  }

  /// Waits until a run has done its work and sleeps or, if false, until all have exited.
  [[nodiscard]] bool isWaiting() const {
    char mark = 0;
    return ::read(m_reading.get(), &mark, 1) == 1;
  }

  [[nodiscard]] int end() const {
    int status = 0;
    EXPECT_EQ(::waitpid(keeper, &status, 0), keeper);
    return status;
  }

private:
  void* m_shared;
  FileDescriptor m_reading;

protected:
  int& runs;
  pid_t keeper = 0;
};

void crash() { static_cast<void>(::raise(SIGKILL)); }

TEST_F(KeeperTest, StartsTheProgramAgainAfterACrashOrAFailure) {
  keep([this] {
    switch (runs) {
    case 1:
      crash();
      break;
    case 2:
      ::_exit(EXIT_FAILURE);
    default:
      ::_exit(EXIT_SUCCESS);
    }
  });
  EXPECT_EQ(end(), EXIT_SUCCESS);
  EXPECT_EQ(runs, 3);
}

TEST_F(KeeperTest, EndsWithAProgramThatEndsWell) {
  keep([] { ::_exit(EXIT_SUCCESS); });
  EXPECT_EQ(end(), EXIT_SUCCESS);
  EXPECT_EQ(runs, 1);
}

TEST_F(KeeperTest, EndsWithAProgramThatIsToldToEnd) {
  keep([] { static_cast<void>(::raise(SIGTERM)); });
  EXPECT_EQ(end(), EXIT_SUCCESS);
  EXPECT_EQ(runs, 1);
}

TEST_F(KeeperTest, TakesTheProgramAlongHoweverItEnds) {
  for (const int signal : {SIGTERM, SIGKILL}) {
    runs = 0;
    keep([] {});
    ASSERT_TRUE(isWaiting());
    ASSERT_EQ(::kill(keeper, signal), 0);
    EXPECT_EQ(WTERMSIG(end()), signal);
    EXPECT_FALSE(isWaiting());
    EXPECT_EQ(runs, 1);
  }
}

TEST_F(KeeperTest, SaysWhatTheProgramEndedBy) {
  testing::internal::CaptureStderr();
  keep([this] {
    if (runs == 1) {
      crash();
    }
    ::_exit(EXIT_SUCCESS);
  });
  EXPECT_EQ(end(), EXIT_SUCCESS);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tidewell: ended by signal 9, starts again in 0 s\n");
}

TEST(RestartDelay, DoublesUpToALimitWhileTheProgramCrashesAtOnce) {
  RestartDelay delay(2, 30);
  EXPECT_EQ(delay.next(0), 2);
  EXPECT_EQ(delay.next(59.9), 4);
  EXPECT_EQ(delay.next(0), 8);
  EXPECT_EQ(delay.next(0), 16);
  EXPECT_EQ(delay.next(0), 30);
  EXPECT_EQ(delay.next(0), 30);
}

TEST(RestartDelay, IsShortAgainForAProgramThatRanForAWhile) {
  RestartDelay delay(2, 30);
  delay.next(0);
  delay.next(0);
  EXPECT_EQ(delay.next(60), 2);
  EXPECT_EQ(delay.next(0), 4);
}

} // namespace
} // namespace tidewell::test
