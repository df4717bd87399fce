#pragma once

#include "base/Interface.h"
#include "platform/PathMonitor.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace tidewell::test {

/// A machine whose route to the internet the test adds and removes. It starts without one.
class PathUnderTest : public Interface {
public:
  [[nodiscard]] virtual PathMonitor& monitor() = 0;
  /// The queue for reports.
  [[nodiscard]] virtual WorkQueue& queue() = 0;

  /// Routes the internet through a wired interface.
  virtual void connect() = 0;
  virtual void disconnect() = 0;
  /// Changes something irrelevant to the path.
  virtual void stir() = 0;
  /// Waits until every report has arrived.
  virtual void settle() = 0;
};

/// A kind of machine; the contract holds for all of them.
struct PathKind {
  std::string name;
  /// Null if the machine does not allow it.
  std::function<std::unique_ptr<PathUnderTest>()> make;
};

class PathContract : public testing::TestWithParam<PathKind> {
protected:
  void SetUp() override {
    path = GetParam().make();
    if (!path) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
  }

  std::unique_ptr<PathUnderTest> path;
};

} // namespace tidewell::test
