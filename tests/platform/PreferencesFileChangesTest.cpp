#include "support/StoredFile.h"

#include <fstream>

namespace tidewell::test {
namespace {

namespace fs = std::filesystem;

class PreferencesFileChanges : public StoredFile {
protected:
  void startWith(std::string_view text) {
    write(text);
    start();
  }
};

TEST_F(PreferencesFileChanges, AReplacedFileIsToldAtOnceKeyByKey) {
  startWith("a = 1\nb = 1\n");
  writeByRenaming(path, "a = 2\nb = 1\n");
  hearEvents();
  EXPECT_EQ(heard, (Heard{{"a", two}}));
}

TEST_F(PreferencesFileChanges, AFileRewrittenInPlaceIsToldOnce) {
  startWith("a = 1\n");
  write("a = 2\nb = 1\n");
  hearEvents();
  becomeQuiet();
  EXPECT_EQ(heard, (Heard{{"a", two}, {"b", one}}));
}

TEST_F(PreferencesFileChanges, AFileCaughtHalfWrittenDoesNotCountUntilItIsQuiet) {
  startWith("a = 1\nb = 1\n");
  for (const char* half : {"", "a = 1\n", "a = 2\nb ="}) {
    write(half);
    hearEvents();
    scheduler.advance(0.04);
    EXPECT_TRUE(heard.empty()) << half;
  }
  write("a = 2\nb = 1\n");
  hearEvents();
  EXPECT_EQ(heard, (Heard{{"a", two}}));
  becomeQuiet();
  EXPECT_EQ(heard.size(), 1U);
}

TEST_F(PreferencesFileChanges, AWriterThatKeepsTheFileOpenIsNoticedOnceItRests) {
  startWith("a = 1\n");
  std::ofstream file(path, std::ios::app);
  file << "b = 2" << std::flush;
  hearEvents();
  EXPECT_TRUE(heard.empty());
  becomeQuiet();
  EXPECT_EQ(heard, (Heard{{"b", two}}));
}

TEST_F(PreferencesFileChanges, ARemovedFileMeansThatItsKeysAreAbsent) {
  startWith("a = 1\n");
  fs::remove(path);
  hearEvents();
  EXPECT_TRUE(heard.empty());
  becomeQuiet();
  EXPECT_EQ(heard, (Heard{{"a", std::nullopt}}));
}

TEST_F(PreferencesFileChanges, AFileThatIsMovedAwayAndBackIsNoChange) {
  startWith("a = 1\n");
  fs::rename(path, path.string() + "~");
  hearEvents();
  fs::rename(path.string() + "~", path);
  hearEvents();
  becomeQuiet();
  EXPECT_TRUE(heard.empty());
}

TEST_F(PreferencesFileChanges, ARemovedDirectoryIsWatchedAgainOnceItIsBack) {
  startWith("a = 1\n");
  fs::remove_all(path.parent_path().parent_path());
  hearEvents();
  becomeQuiet();
  EXPECT_EQ(heard, (Heard{{"a", std::nullopt}}));
  fs::create_directory(path.parent_path().parent_path());
  hearEvents();
  fs::create_directory(path.parent_path());
  hearEvents();
  writeInPlace(path, "a = 2\n");
  hearEvents();
  becomeQuiet();
  ASSERT_EQ(heard.size(), 2U);
  EXPECT_EQ(heard[1], Heard::value_type("a", two));
}

TEST_F(PreferencesFileChanges, ADirectoryThatCannotExistYetIsWaitedFor) {
  writeInPlace(directory / "config", "a file where the directory should be");
  start();
  EXPECT_EQ(store->value("a"), std::nullopt);
  fs::remove(directory / "config");
  fs::create_directories(path.parent_path());
  writeInPlace(path, "a = 1\n");
  hearEvents();
  becomeQuiet();
  EXPECT_EQ(heard, (Heard{{"a", one}}));
}

TEST_F(PreferencesFileChanges, AFileBehindALinkIsWatchedAndTheLinkAsWell) {
  fs::create_directories(directory / "one");
  fs::create_directories(directory / "two");
  writeInPlace(directory / "one/file", "a = 1\n");
  writeInPlace(directory / "two/file", "a = 2\n");
  fs::create_directories(path.parent_path());
  fs::create_symlink(directory / "one/file", path);
  start();
  EXPECT_EQ(store->value("a"), one);

  fs::create_symlink(directory / "two/file", path.string() + "~");
  fs::rename(path.string() + "~", path);
  hearEvents();
  EXPECT_EQ(heard, (Heard{{"a", two}}));

  writeInPlace(directory / "two/file", "a = 1\n");
  hearEvents();
  EXPECT_EQ(heard.back(), Heard::value_type("a", one));
}

TEST_F(PreferencesFileChanges, NeighboursAndOwnWritesAreNotToldAgain) {
  startWith("a = 1\n");
  store->set("a", two);
  writeInPlace(path.parent_path() / "other.toml", "a = 9\n");
  scheduler.settle();
  hearEvents();
  becomeQuiet();
  EXPECT_EQ(heard, (Heard{{"a", two}}));
}

TEST_F(PreferencesFileChanges, AFileThatBecomesUnreadableChangesNothing) {
  startWith("a = 1\n");
  fs::remove(path);
  fs::create_directory(path);
  hearEvents();
  becomeQuiet();
  EXPECT_TRUE(heard.empty());
  EXPECT_EQ(store->value("a"), one);
  fs::remove(path);
  write("a = 2\n");
  hearEvents();
  EXPECT_EQ(heard, (Heard{{"a", two}}));
}

TEST_F(PreferencesFileChanges, WhereNothingCanBeWatchedChangesShowWithinAMinute) {
  isWatchRefused = true;
  startWith("a = 1\n");
  write("a = 2\n");
  scheduler.advance(61.0);
  EXPECT_EQ(heard, (Heard{{"a", two}}));

  isWatchRefused = false;
  scheduler.advance(61.0);
  writeByRenaming(path, "a = 1\n");
  hearEvents();
  EXPECT_EQ(heard.back(), Heard::value_type("a", one));
}

} // namespace
} // namespace tidewell::test
