#include "contract/PreferencesStoreContract.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "platform/linux/preferences/PreferencesStorage.h"
#include "support/FakePreferencesStore.h"
#include "support/TemporaryDirectory.h"

namespace tidewell::test {
namespace {

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
    EXPECT_TRUE(PreferencesStorage(m_path).write({{std::string(key), value}}, {}));
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

} // namespace
} // namespace tidewell::test
