#include "contract/PathContract.h"

#include <mutex>
#include <vector>

namespace tidewell::test {
namespace {

constexpr PathReport wired{true, false, true, false};
constexpr PathReport none{false, false, false, false};

/// Keeps the reports that come, on whatever thread.
class Reports {
public:
  explicit Reports(WorkQueue& queue) : m_queue(queue) {}

  PathMonitor::Handler handler() {
    return [this](const PathReport& report) {
      const std::scoped_lock lock(m_mutex);
      m_heard.push_back(report);
      m_allOnQueue = m_allOnQueue && m_queue.isCurrent();
    };
  }
  std::vector<PathReport> heard() {
    const std::scoped_lock lock(m_mutex);
    return m_heard;
  }
  bool allOnQueue() {
    const std::scoped_lock lock(m_mutex);
    return m_allOnQueue;
  }

private:
  WorkQueue& m_queue;
  std::mutex m_mutex;
  std::vector<PathReport> m_heard;
  bool m_allOnQueue = true;
};

TEST_P(PathContract, ReportsThePathAsItIsAtTheStart) {
  path->connect();
  Reports reports(path->queue());
  const auto watch = path->monitor().watch(path->queue(), reports.handler());
  path->settle();
  EXPECT_EQ(reports.heard(), std::vector{wired});
}

TEST_P(PathContract, ReportsEachChangeOnceInOrderOnTheQueue) {
  path->connect();
  Reports reports(path->queue());
  const auto watch = path->monitor().watch(path->queue(), reports.handler());
  path->settle();
  path->disconnect();
  path->settle();
  path->connect();
  path->settle();
  EXPECT_EQ(reports.heard(), (std::vector{wired, none, wired}));
  EXPECT_TRUE(reports.allOnQueue());
}

TEST_P(PathContract, ReportsNothingWhenThePathIsTheSame) {
  path->connect();
  Reports reports(path->queue());
  const auto watch = path->monitor().watch(path->queue(), reports.handler());
  path->settle();
  path->stir();
  path->settle();
  EXPECT_EQ(reports.heard().size(), 1U);
}

TEST_P(PathContract, ReportsNothingOnceItsWatchHasEnded) {
  path->connect();
  Reports reports(path->queue());
  auto watch = path->monitor().watch(path->queue(), reports.handler());
  path->settle();
  watch.reset();
  path->disconnect();
  path->settle();
  EXPECT_EQ(reports.heard().size(), 1U);
}

} // namespace
} // namespace tidewell::test
