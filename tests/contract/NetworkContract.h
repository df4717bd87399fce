#pragma once

#include "base/Interface.h"
#include "platform/ConfigurationStore.h"
#include "platform/InterfaceCounters.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tidewell::test {

/// A machine whose network interfaces the test creates, uses and removes.
class NetworkUnderTest : public Interface {
public:
  [[nodiscard]] virtual InterfaceCounters& counters() = 0;
  [[nodiscard]] virtual ConfigurationStore& configuration() = 0;

  /// Creates an interface that is up.
  virtual void add(const std::string& interface) = 0;
  virtual void remove(const std::string& interface) = 0;
  /// Sends this many bytes, as the interface counts them.
  virtual void send(const std::string& interface, std::int64_t bytes) = 0;
  /// Routes the public internet through an interface, or nowhere.
  virtual void route(const std::optional<std::string>& interface) = 0;
};

/// A kind of network; the contract holds for all of them.
struct NetworkKind {
  std::string name;
  /// Null if the machine does not allow it.
  std::function<std::unique_ptr<NetworkUnderTest>()> make;
};

class NetworkContract : public testing::TestWithParam<NetworkKind> {
protected:
  void SetUp() override {
    network = GetParam().make();
    if (!network) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
  }

  std::unique_ptr<NetworkUnderTest> network;
};

} // namespace tidewell::test
