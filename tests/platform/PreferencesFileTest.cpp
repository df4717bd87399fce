#include "support/StoredFile.h"

#include <sys/stat.h>

namespace tidewell::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class PreferencesFileTest : public StoredFile {};

mode_t modeOf(const fs::path& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0);
  return status.st_mode & 07777;
}

TEST_F(PreferencesFileTest, AFreshUserHasADirectoryOfTheirOwnAndNoFile) {
  start();
  EXPECT_EQ(modeOf(path.parent_path()), 0700U);
  EXPECT_FALSE(fs::exists(path));
  EXPECT_EQ(store->value("refreshInterval"), std::nullopt);
}

TEST_F(PreferencesFileTest, TheFirstWriteMakesAReadableFileWithThatKeyAlone) {
  start();
  store->set("refreshInterval", 5.0);
  EXPECT_EQ(contents(), "# Tidewell's preferences. Changes take effect at once.\n\n"
                        "refreshInterval = 5.0\n");
  EXPECT_EQ(modeOf(path), 0600U);
  EXPECT_EQ(filesNamed(path.parent_path(), "").size(), 1U);
}

TEST_F(PreferencesFileTest, TheNextRunReadsWhatWasWritten) {
  start();
  store->set("a", std::int64_t{-7});
  store->set("b", "two"s);
  start();
  EXPECT_EQ(store->value("a"), PreferenceValue(std::int64_t{-7}));
  EXPECT_EQ(store->value("b"), PreferenceValue("two"s));
}

TEST_F(PreferencesFileTest, AWriteKeepsCommentsUnknownKeysTablesAndTheMode) {
  write("# mine\na = 1 # one\nfuture = [1, 2]\n\n[table]\nx = 1\n");
  fs::permissions(path, fs::perms{0640});
  start();
  store->set("a", std::int64_t{2});
  store->set("b", true);
  EXPECT_EQ(contents(), "# mine\na = 2 # one\nfuture = [1, 2]\nb = true\n\n[table]\nx = 1\n");
  EXPECT_EQ(modeOf(path), 0640U);
}

TEST_F(PreferencesFileTest, AWriteOfWhatIsStoredLeavesTheFileAlone) {
  write("a = 1.50\n");
  start();
  const auto before = fs::last_write_time(path);
  store->set("a", 1.5);
  EXPECT_EQ(contents(), "a = 1.50\n");
  EXPECT_EQ(fs::last_write_time(path), before);
}

TEST_F(PreferencesFileTest, AWriteKeepsWhatAnotherWriterJustStored) {
  write("a = 1\n");
  start();
  write("a = 2\nb = 3\n");
  store->set("refreshInterval", 5.0);
  EXPECT_EQ(contents(), "a = 2\nb = 3\nrefreshInterval = 5.0\n");
  EXPECT_EQ(store->value("b"), PreferenceValue(std::int64_t{3}));
  scheduler.settle();
  EXPECT_EQ(heard, (Heard{{"a", PreferenceValue(std::int64_t{2})},
                          {"b", PreferenceValue(std::int64_t{3})},
                          {"refreshInterval", PreferenceValue(5.0)}}));
}

TEST_F(PreferencesFileTest, AWriteMakesTheDirectoryAgainThatSomebodyRemoved) {
  start();
  fs::remove_all(path.parent_path().parent_path());
  store->set("a", true);
  EXPECT_NE(contents().find("a = true\n"), std::string::npos);
}

TEST_F(PreferencesFileTest, ASymbolicLinkStaysAndItsTargetIsWritten) {
  fs::create_directories(path.parent_path());
  fs::create_directory(directory / "dotfiles");
  writeInPlace(directory / "dotfiles/tidewell.toml", "a = 1\n");
  fs::create_symlink("../../dotfiles/tidewell.toml", path);
  start();
  store->set("a", std::int64_t{2});
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(contentsOf(directory / "dotfiles/tidewell.toml"), "a = 2\n");
}

TEST_F(PreferencesFileTest, ALinkToAFileThatDoesNotExistYetMakesThatFile) {
  fs::create_directories(path.parent_path());
  fs::create_symlink(directory / "elsewhere.toml", path);
  start();
  store->set("a", true);
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_NE(contentsOf(directory / "elsewhere.toml").find("a = true"), std::string::npos);
}

TEST_F(PreferencesFileTest, OfABrokenFileTheReadableKeysCountAndNothingIsTouched) {
  write("a = 1\nb = = 2\n");
  start();
  EXPECT_EQ(store->value("a"), PreferenceValue(std::int64_t{1}));
  EXPECT_EQ(store->value("b"), std::nullopt);
  EXPECT_EQ(contents(), "a = 1\nb = = 2\n");
  EXPECT_TRUE(keptAside().empty());
}

TEST_F(PreferencesFileTest, ABrokenFileIsKeptAsideBeforeItIsReplaced) {
  write("# mine\na = 1\nb = = 2\nfuture = [1]\n");
  start();
  store->set("refreshInterval", 5.0);
  EXPECT_EQ(contents(), "# mine\na = 1\nfuture = [1]\nrefreshInterval = 5.0\n");
  ASSERT_EQ(keptAside().size(), 1U);
  EXPECT_EQ(contentsOf(keptAside()[0]), "# mine\na = 1\nb = = 2\nfuture = [1]\n");
}

TEST_F(PreferencesFileTest, ABrokenKeyKeepsTheLastGoodValueThatThisProcessKnew) {
  write("a = 1\nb = 2\n");
  start();
  write("a = 3\nb = = 2\n");
  hearEvents();
  becomeQuiet();
  EXPECT_EQ(store->value("a"), PreferenceValue(std::int64_t{3}));
  EXPECT_EQ(store->value("b"), PreferenceValue(std::int64_t{2}));
  store->set("refreshInterval", 5.0);
  EXPECT_EQ(contents(), "a = 3\nb = 2\nrefreshInterval = 5.0\n");
}

TEST_F(PreferencesFileTest, EveryBrokenFileIsKeptUnderANameOfItsOwn) {
  start();
  for (int time = 0; time < 4; ++time) {
    write("broken number " + std::to_string(time));
    store->set("a", std::int64_t{time});
  }
  EXPECT_EQ(keptAside().size(), 4U);
}

TEST_F(PreferencesFileTest, ATextThatIsNoUtf8IsStoredAsNearAsItCanBe) {
  start();
  store->set("a", "x\xFFy"s);
  EXPECT_EQ(store->value("a"), PreferenceValue("x\uFFFDy"s));
  start();
  EXPECT_EQ(store->value("a"), PreferenceValue("x\uFFFDy"s));
}

} // namespace
} // namespace tidewell::test
