#pragma once

#include "platform/PreferencesStore.h"
#include "platform/linux/loop/EpollLoop.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tidewell::test {

/// A store under test together with the other writers that it shares its values with.
class StoreUnderTest {
public:
  StoreUnderTest() = default;
  StoreUnderTest(const StoreUnderTest&) = delete;
  StoreUnderTest& operator=(const StoreUnderTest&) = delete;
  virtual ~StoreUnderTest() = default;

  [[nodiscard]] virtual PreferencesStore& store() = 0;
  /// Stores a value behind the store's back.
  virtual void writeFromOutside(std::string_view key, const PreferenceValue& value) = 0;
  /// Removes every value behind the store's back.
  virtual void clearFromOutside() = 0;
};

/// One way to make a store; the contract holds for all of them.
struct StoreKind {
  std::string name;
  std::function<std::unique_ptr<StoreUnderTest>(EventLoop&)> make;
};

class PreferencesStoreContract : public testing::TestWithParam<StoreKind> {
protected:
  EpollLoop loop;
  std::unique_ptr<StoreUnderTest> world = GetParam().make(loop);
  PreferencesStore& store = world->store();
};

} // namespace tidewell::test
