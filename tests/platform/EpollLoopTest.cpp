#include "platform/linux/loop/EpollLoop.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include <sys/epoll.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

struct PipePair {
  PipePair() {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe(ends.data()), 0);
    readEnd = FileDescriptor(ends[0]);
    writeEnd = FileDescriptor(ends[1]);
  }
  void write(char byte) const { EXPECT_EQ(::write(writeEnd.get(), &byte, 1), 1); }
  char read() const {
    char byte = 0;
    EXPECT_EQ(::read(readEnd.get(), &byte, 1), 1);
    return byte;
  }

  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

TEST(EpollLoop, CallsTheHandlerOfAReadableDescriptor) {
  EpollLoop loop;
  const PipePair pipe;
  std::string heard;
  const auto watch = loop.watch(pipe.readEnd.get(), EPOLLIN, [&](std::uint32_t events) {
    EXPECT_NE(events & EPOLLIN, 0U);
    heard += pipe.read();
    if (heard.size() == 2) {
      loop.quit();
    }
  });
  ASSERT_NE(watch, nullptr);
  pipe.write('a');
  pipe.write('b');
  loop.run();
  EXPECT_EQ(heard, "ab");
}

TEST(EpollLoop, LetsAHandlerEndItsOwnWatchAndAnothers) {
  EpollLoop loop;
  const PipePair first;
  const PipePair second;
  int calls = 0;
  std::array<std::unique_ptr<FdWatch>, 2> watches;
  const auto handler = [&](std::uint32_t) {
    ++calls;
    watches = {};
    loop.post([&] { loop.quit(); });
  };
  watches[0] = loop.watch(first.readEnd.get(), EPOLLIN, handler);
  watches[1] = loop.watch(second.readEnd.get(), EPOLLIN, handler);
  first.write('a');
  second.write('b');
  loop.run();
  EXPECT_EQ(calls, 1);
}

TEST(EpollLoop, ListensForWhatItIsToldTo) {
  EpollLoop loop;
  const PipePair pipe;
  int calls = 0;
  const auto watch = loop.watch(pipe.readEnd.get(), EPOLLIN, [&](std::uint32_t) { ++calls; });
  watch->setEvents(0);
  pipe.write('a');
  loop.postAfter(0.02, [&] { loop.quit(); });
  loop.run();
  EXPECT_EQ(calls, 0);
}

TEST(EpollLoop, SaysWhenADescriptorCannotBeWatched) {
  EpollLoop loop;
  EXPECT_EQ(loop.watch(-1, EPOLLIN, [](std::uint32_t) {}), nullptr);
}

TEST(EpollLoop, CallsBeforeSleepAfterTheTasksOfATurn) {
  EpollLoop loop;
  std::vector<std::string> order;
  const auto hook = loop.beforeSleep([&] {
    order.emplace_back("before sleep");
    if (order.size() == 3) {
      loop.quit();
    }
  });
  loop.post([&] { order.emplace_back("first"); });
  loop.post([&] { order.emplace_back("second"); });
  loop.run();
  ASSERT_GE(order.size(), 3U);
  EXPECT_EQ(order[2], "before sleep");
}

TEST(EpollLoop, RunsWhatBeforeSleepPosted) {
  EpollLoop loop;
  bool posted = false;
  const auto hook = loop.beforeSleep([&] {
    if (!posted) {
      posted = true;
      loop.post([&] { loop.quit(); });
    }
  });
  loop.run();
  EXPECT_TRUE(posted);
}

TEST(EpollLoop, GivesDescriptorsTheirChanceBesideTasksThatNeverEnd) {
  EpollLoop loop;
  const PipePair pipe;
  std::function<void()> forever = [&] { loop.post(forever); };
  loop.post(forever);
  const auto watch = loop.watch(pipe.readEnd.get(), EPOLLIN, [&](std::uint32_t) { loop.quit(); });
  pipe.write('a');
  loop.run();
}

/// Whether a timer that a firing sets after some work fires in one turn with the firing that falls
/// due at the same time.
bool wakesOnceForBoth() {
  EpollLoop loop;
  int sleeps = 0;
  int firings = 0;
  int sleepsAtThird = 0;
  int sleepsAtLast = 0;
  const auto hook = loop.beforeSleep([&] { ++sleeps; });
  const auto timer = loop.repeat(0.05, 0.05, [&] {
    ++firings;
    if (firings == 1) {
      ::usleep(4000);
      loop.postAfter(0.1, [&] {
        sleepsAtLast = sleeps;
        loop.quit();
      });
    } else if (firings == 3) {
      sleepsAtThird = sleeps;
    }
  });
  loop.run();
  return firings == 3 && sleepsAtLast == sleepsAtThird;
}

TEST(EpollLoop, CountsATimersDelayFromTheAlarmThatLedToIt) {
  bool isTogether = false;
  for (int attempt = 0; attempt < 10 && !isTogether; ++attempt) { // a busy machine is late
    isTogether = wakesOnceForBoth();
  }
  EXPECT_TRUE(isTogether);
}

} // namespace
} // namespace tidewell::test
