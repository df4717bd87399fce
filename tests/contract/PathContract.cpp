#include "contract/PathContract.h"

#include <vector>

namespace tidewell::test {
namespace {

constexpr PathReport wired{true, false, true, false};
constexpr PathReport none{false, false, false, false};

using Reports = std::vector<PathReport>;

PathMonitor::Handler keeping(Reports& reports) {
  return [&reports](const PathReport& report) { reports.push_back(report); };
}

TEST_P(PathContract, ReportsThePathAsItIsAtTheStart) {
  path->connect();
  Reports reports;
  const auto watch = path->monitor().watch(path->queue(), keeping(reports));
  EXPECT_TRUE(reports.empty()) << "reports come on the queue";
  path->settle();
  EXPECT_EQ(reports, std::vector{wired});
}

TEST_P(PathContract, ReportsEachChangeOnceInOrder) {
  path->connect();
  Reports reports;
  const auto watch = path->monitor().watch(path->queue(), keeping(reports));
  path->settle();
  path->disconnect();
  path->settle();
  path->connect();
  path->settle();
  EXPECT_EQ(reports, (std::vector{wired, none, wired}));
}

TEST_P(PathContract, ReportsNothingWhenThePathIsTheSame) {
  path->connect();
  Reports reports;
  const auto watch = path->monitor().watch(path->queue(), keeping(reports));
  path->settle();
  path->stir();
  path->settle();
  EXPECT_EQ(reports.size(), 1U);
}

TEST_P(PathContract, ReportsNothingOnceItsWatchHasEnded) {
  path->connect();
  Reports reports;
  auto watch = path->monitor().watch(path->queue(), keeping(reports));
  path->settle();
  watch.reset();
  path->disconnect();
  path->settle();
  EXPECT_EQ(reports.size(), 1U);
}

} // namespace
} // namespace tidewell::test
