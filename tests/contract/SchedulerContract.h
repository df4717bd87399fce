#pragma once

#include "base/Interface.h"
#include "base/Scheduler.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace tidewell::test {

/// A scheduler under test and its source of time.
class SchedulerUnderTest : public Interface {
public:
  [[nodiscard]] virtual Scheduler& scheduler() = 0;
  /// Runs the main queue for this time.
  virtual void run(Seconds span) = 0;
  /// Makes the awaiting task wait.
  [[nodiscard]] virtual Async<> sleep(Seconds span) = 0;
};

/// A kind of scheduler; the contract holds for all of them.
struct SchedulerKind {
  std::string name;
  std::function<std::unique_ptr<SchedulerUnderTest>()> make;
};

class SchedulerContract : public testing::TestWithParam<SchedulerKind> {
protected:
  std::unique_ptr<SchedulerUnderTest> world = GetParam().make();
  Scheduler& scheduler = world->scheduler();
};

} // namespace tidewell::test
