#include "base/Interface.h"
#include "platform/PreferencesStore.h"

#include "platform/linux/loop/EpollLoop.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "platform/linux/preferences/PreferencesStorage.h"
#include "support/FakePreferencesStore.h"
#include "support/LoopRunner.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell::test {
namespace {

// A store and the other writers of its values.
class StoreUnderTest : public Interface {
public:
  [[nodiscard]] virtual PreferencesStore& store() = 0;
  // Stores a value as another writer does.
  virtual void writeFromOutside(std::string_view key, const PreferenceValue& value) = 0;
  // Removes every value as another writer does.
  virtual void clearFromOutside() = 0;
};

// One way to make a store. The contract holds for all of them.
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

class FakeStore final : public StoreUnderTest {
public:
  explicit FakeStore(EventLoop& loop) : m_store(loop) {}
  PreferencesStore& store() override { return m_store; }
  void writeFromOutside(std::string_view key, const PreferenceValue& value) override {
    m_store.set(key, value);
  }
  void clearFromOutside() override { m_store.clear(); }

private:
  FakePreferencesStore m_store;
};

class FileStore final : public StoreUnderTest {
public:
  explicit FileStore(EventLoop& loop) : m_store(m_path, loop) {}
  PreferencesStore& store() override { return m_store; }
  void writeFromOutside(std::string_view key, const PreferenceValue& value) override {
    EXPECT_FALSE(PreferencesStorage(m_path).write({{std::string(key), value}}, {}).error);
  }
  void clearFromOutside() override { std::filesystem::remove(m_path); }

private:
  TemporaryDirectory m_directory;
  std::string m_path = (m_directory / "tidewell/preferences.toml").string();
  PreferencesFile m_store;
};

INSTANTIATE_TEST_SUITE_P(
    Stores, PreferencesStoreContract,
    testing::Values(
        StoreKind{"fake", [](EventLoop& loop) { return std::make_unique<FakeStore>(loop); }},
        StoreKind{"file", [](EventLoop& loop) { return std::make_unique<FileStore>(loop); }}),
    [](const auto& kind) { return kind.param.name; });

using Heard = std::vector<std::optional<PreferenceValue>>;
using namespace std::string_literals;

PreferencesStore::Observer into(Heard& heard) {
  return [&heard](const std::optional<PreferenceValue>& value) { heard.push_back(value); };
}

TEST_P(PreferencesStoreContract, HasNoValueForAKeyThatNobodyWrote) {
  EXPECT_EQ(store.value("refreshInterval"), std::nullopt);
}

TEST_P(PreferencesStoreContract, GivesBackWhatWasWrittenWithItsType) {
  const std::vector<PreferenceValue> values{
      true,
      false,
      std::int64_t{0},
      std::numeric_limits<std::int64_t>::min(),
      std::numeric_limits<std::int64_t>::max(),
      0.0,
      5.0,
      -0.1,
      1e300,
      std::numeric_limits<double>::denorm_min(),
      std::numeric_limits<double>::infinity(),
      -std::numeric_limits<double>::infinity(),
      std::numeric_limits<double>::quiet_NaN(),
      ""s,
      "all"s,
      "quote \" backslash \\ line\nend\r tab\t nul\0 del\x7F é ↓ 🌊"s,
  };
  for (const PreferenceValue& value : values) {
    store.set("key", value);
    const auto stored = store.value("key");
    ASSERT_TRUE(stored);
    EXPECT_TRUE(isSame(*stored, value)) << "value number " << &value - values.data();
  }
}

TEST_P(PreferencesStoreContract, KeepsEachKeyApart) {
  store.set("refreshInterval", 5.0);
  store.set("trackPerProcess", false);
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(5.0));
  EXPECT_EQ(store.value("trackPerProcess"), PreferenceValue(false));
  EXPECT_EQ(store.value("refresh"), std::nullopt);
}

TEST_P(PreferencesStoreContract, TellsEachChangeOnceInOrderButNotInsideTheWrite) {
  Heard heard;
  const Subscription subscription = store.observe("refreshInterval", into(heard));
  store.set("refreshInterval", 1.0);
  store.set("refreshInterval", 5.0);
  EXPECT_TRUE(heard.empty());
  ASSERT_TRUE(runUntil(loop, [&] { return heard.size() >= 2; }));
  EXPECT_EQ(heard, (Heard{PreferenceValue(1.0), PreferenceValue(5.0)}));
}

TEST_P(PreferencesStoreContract, TellsNeitherThePresentValueNorWhatChangedBeforeNorAnEqualOne) {
  store.set("refreshInterval", 1.0);
  Heard heard;
  const Subscription subscription = store.observe("refreshInterval", into(heard));
  store.set("refreshInterval", 1.0);
  store.set("refreshInterval", std::nan(""));
  store.set("refreshInterval", std::nan(""));
  store.set("refreshInterval", 2.0);
  ASSERT_TRUE(runUntil(loop, [&] { return heard.size() >= 2; }));
  ASSERT_EQ(heard.size(), 2U);
  EXPECT_TRUE(std::isnan(as<double>(heard[0]).value_or(0.0)));
  EXPECT_EQ(heard[1], PreferenceValue(2.0));
}

TEST_P(PreferencesStoreContract, TellsTheObserversOfThatKeyAlone) {
  Heard interval;
  Heard tracking;
  const Subscription first = store.observe("refreshInterval", into(interval));
  const Subscription second = store.observe("trackPerProcess", into(tracking));
  store.set("refreshInterval", 1.0);
  store.set("trackPerProcess", false);
  ASSERT_TRUE(runUntil(loop, [&] { return !tracking.empty(); }));
  EXPECT_EQ(interval, Heard{PreferenceValue(1.0)});
  EXPECT_EQ(tracking, Heard{PreferenceValue(false)});
}

TEST_P(PreferencesStoreContract, NoticesWhatOtherWritersDo) {
  store.set("trackPerProcess", true);
  Heard interval;
  Heard tracking;
  const Subscription first = store.observe("refreshInterval", into(interval));
  const Subscription second = store.observe("trackPerProcess", into(tracking));
  world->writeFromOutside("refreshInterval", 7.5);
  ASSERT_TRUE(runUntil(loop, [&] { return !interval.empty(); }));
  EXPECT_EQ(interval, Heard{PreferenceValue(7.5)});
  EXPECT_EQ(store.value("refreshInterval"), PreferenceValue(7.5));
  EXPECT_TRUE(tracking.empty());

  world->clearFromOutside();
  ASSERT_TRUE(runUntil(loop, [&] { return interval.size() == 2 && !tracking.empty(); }));
  EXPECT_EQ(interval.back(), std::nullopt);
  EXPECT_EQ(tracking, Heard{std::nullopt});
  EXPECT_EQ(store.value("refreshInterval"), std::nullopt);
}

TEST_P(PreferencesStoreContract, IsQuietOnceASubscriptionEnds) {
  Heard ended;
  Heard kept;
  Subscription subscription = store.observe("refreshInterval", into(ended));
  const Subscription other = store.observe("refreshInterval", into(kept));
  store.set("refreshInterval", 1.0);
  subscription.end();
  ASSERT_TRUE(runUntil(loop, [&] { return !kept.empty(); }));
  EXPECT_TRUE(ended.empty());
}

TEST_P(PreferencesStoreContract, LetsAnObserverWriteTheValueAgain) {
  Heard heard;
  const Subscription subscription =
      store.observe("refreshInterval", [&](const std::optional<PreferenceValue>& value) {
        heard.push_back(value);
        store.set("refreshInterval", 2.0);
      });
  store.set("refreshInterval", 1.0);
  ASSERT_TRUE(runUntil(loop, [&] { return heard.size() >= 2; }));
  EXPECT_EQ(heard, (Heard{PreferenceValue(1.0), PreferenceValue(2.0)}));
}

TEST_P(PreferencesStoreContract, MayGoWhileAnObserverRuns) {
  int calls = 0;
  const auto goes = [&](const std::optional<PreferenceValue>&) {
    ++calls;
    world.reset();
  };
  const Subscription subscription = store.observe("refreshInterval", goes);
  store.set("refreshInterval", 1.0);
  store.set("refreshInterval", 2.0);
  ASSERT_TRUE(runUntil(loop, [&] { return calls > 0; }));
  bool isServed = false;
  loop.post([&] { isServed = true; });
  ASSERT_TRUE(runUntil(loop, [&] { return isServed; }));
  EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace tidewell::test
