// A disk that refuses a write, and other things in place of the file.

#include "platform/linux/files/FileReading.h"
#include "support/StoredFile.h"

#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

namespace fs = std::filesystem;

// Gives up root's rights for a while. The test's files then belong to nobody.
class Unprivileged {
public:
  explicit Unprivileged(const fs::path& directory) {
    if (m_isRoot) {
      EXPECT_EQ(::chown(directory.c_str(), nobody, nobody), 0);
      EXPECT_EQ(::seteuid(nobody), 0);
    }
  }
  Unprivileged(Unprivileged&&) = delete;
  ~Unprivileged() {
    if (m_isRoot) {
      EXPECT_EQ(::seteuid(0), 0);
    }
  }

private:
  static constexpr uid_t nobody = 65534;
  bool m_isRoot = ::geteuid() == 0;
};

class PreferencesFileRefusal : public StoredFile {
protected:
  void expectThatWritingReplacesIt() {
    start();
    EXPECT_EQ(store->value("a"), std::nullopt);
    store->set("a", one);
    EXPECT_EQ(keptAside().size(), 1U);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
    start();
    EXPECT_EQ(store->value("a"), one);
  }
};

TEST_F(PreferencesFileRefusal, AReadOnlyDirectoryKeepsTheOldValueUntilItIsWritable) {
  const Unprivileged user(directory.path());
  write("a = 1\n");
  fs::permissions(path.parent_path(), fs::perms{0500});
  start();
  EXPECT_EQ(store->set("a", two), std::errc::permission_denied);
  EXPECT_EQ(store->value("a"), one);
  scheduler.settle();
  EXPECT_TRUE(heard.empty());
  EXPECT_EQ(contents(), "a = 1\n");

  fs::permissions(path.parent_path(), fs::perms{0700});
  EXPECT_FALSE(store->set("a", two));
  EXPECT_EQ(store->value("a"), two);
  scheduler.settle();
  EXPECT_EQ(heard, (Heard{{"a", two}}));
  EXPECT_EQ(contents(), "a = 2\n");
}

TEST_F(PreferencesFileRefusal, ADirectoryThatCannotBeMadeIsMadeWithALaterWrite) {
  const Unprivileged user(directory.path());
  fs::permissions(directory.path(), fs::perms{0500});
  start();
  EXPECT_EQ(store->set("a", one), std::errc::permission_denied);
  EXPECT_EQ(store->value("a"), std::nullopt);
  fs::permissions(directory.path(), fs::perms{0700});
  EXPECT_FALSE(store->set("a", one));
  EXPECT_NE(contents().find("a = 1\n"), std::string::npos);
}

TEST_F(PreferencesFileRefusal, AFileThatMayNotBeReadIsKeptAsideBeforeItIsReplaced) {
  const Unprivileged user(directory.path());
  write("secret = 1\n");
  fs::permissions(path, fs::perms{0000});
  start();
  EXPECT_EQ(store->value("secret"), std::nullopt);
  store->set("a", one);
  ASSERT_EQ(keptAside().size(), 1U);
  fs::permissions(keptAside()[0], fs::perms{0600});
  EXPECT_EQ(contentsOf(keptAside()[0]), "secret = 1\n");
}

TEST_F(PreferencesFileRefusal, AFullDiskKeepsTheOldFileAndValue) {
  const fs::path disk = directory / "disk";
  fs::create_directory(disk);
  // A mount in this process alone.
  if (::unshare(CLONE_NEWNS) != 0 ||
      ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
      ::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "mounting a small disk needs root";
  }
  path = disk / "tidewell/preferences.toml";
  write("a = 1\n");
  start();
  writeInPlace(disk / "filler", std::string(100'000, 'x'));
  EXPECT_EQ(store->set("a", two), std::errc::no_space_on_device);
  EXPECT_EQ(store->value("a"), one);
  EXPECT_EQ(contents(), "a = 1\n");
  EXPECT_EQ(filesNamed(path.parent_path(), "").size(), 1U);

  fs::remove(disk / "filler");
  EXPECT_FALSE(store->set("a", two));
  EXPECT_EQ(contents(), "a = 2\n");
  store.reset();
  EXPECT_EQ(::umount2(disk.c_str(), MNT_DETACH), 0);
}

TEST_F(PreferencesFileRefusal, ADirectoryInPlaceOfTheFileIsKeptAside) {
  fs::create_directories(path / "inner");
  expectThatWritingReplacesIt();
  EXPECT_TRUE(fs::is_directory(keptAside()[0] / "inner"));
}

TEST_F(PreferencesFileRefusal, APipeInPlaceOfTheFileBlocksNothing) {
  fs::create_directories(path.parent_path());
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  expectThatWritingReplacesIt();
}

TEST_F(PreferencesFileRefusal, ALinkToADeviceIsReplacedAndTheDeviceIsNot) {
  fs::create_directories(path.parent_path());
  fs::create_symlink("/dev/zero", path);
  expectThatWritingReplacesIt();
  EXPECT_TRUE(fs::is_character_file("/dev/zero"));
  EXPECT_EQ(fs::read_symlink(keptAside()[0]), "/dev/zero");
}

TEST_F(PreferencesFileRefusal, ALinkToItselfIsReplaced) {
  fs::create_directories(path.parent_path());
  fs::create_symlink(path, path);
  expectThatWritingReplacesIt();
}

TEST_F(PreferencesFileRefusal, AFileOfAGibibyteIsNotReadButKept) {
  write("");
  fs::resize_file(path, 1ULL << 30U);
  expectThatWritingReplacesIt();
  EXPECT_EQ(fs::file_size(keptAside()[0]), 1ULL << 30U);
}

TEST_F(PreferencesFileRefusal, AFileThatHasMoreBytesThanItsSizeIsNotRead) {
  EXPECT_EQ(readFile("/proc/self/stat", 4096).outcome, FileReading::Outcome::unreadable);
}

TEST_F(PreferencesFileRefusal, AValueThatWouldMakeTheFileUnreadableIsRefused) {
  start();
  store->set("a", one);
  EXPECT_EQ(store->set("b", std::string(2U << 20U, 'x')), std::errc::file_too_large);
  EXPECT_EQ(store->value("b"), std::nullopt);
  EXPECT_EQ(store->value("a"), one);
  EXPECT_LT(fs::file_size(path), 1000U);
  EXPECT_TRUE(keptAside().empty());
}

} // namespace
} // namespace tidewell::test
