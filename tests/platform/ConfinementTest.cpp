#include "platform/linux/process/Confinement.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

/// Runs `work` in a child process; whether it succeeded there.
bool holdsInChild(auto&& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::_exit(work() ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  int status = 0;
  return ::waitpid(child, &status, 0) == child && status == EXIT_SUCCESS;
}

bool isRefused(int result) { return result != 0 && (errno == EACCES || errno == EXDEV); }

class ConfinementTest : public testing::Test {
protected:
  void SetUp() override {
    if (::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) < 1) {
      GTEST_SKIP() << "the kernel or this container has no Landlock";
    }
    writeInPlace(file, "text");
  }

  TemporaryDirectory directory;
  std::filesystem::path file = directory / "file";
};

TEST_F(ConfinementTest, LeavesReadingAndWhatIsOpen) {
  EXPECT_TRUE(holdsInChild([this] {
    std::ofstream open(directory / "open");
    if (!forbidWritingAndStarting()) {
      return false;
    }
    open << "written" << std::flush;
    std::string text;
    return open.good() && std::ifstream(file) >> text && text == "text";
  }));
  EXPECT_EQ(contentsOf(directory / "open"), "written");
}

TEST_F(ConfinementTest, RefusesToMakeChangeAndRemoveFiles) {
  const std::string path = file.string();
  const std::string other = (directory / "other").string();
  EXPECT_TRUE(holdsInChild([&] {
    return forbidWritingAndStarting() && isRefused(::open(path.c_str(), O_WRONLY | O_CLOEXEC)) &&
           isRefused(::open(path.c_str(), O_RDONLY | O_TRUNC | O_CLOEXEC)) &&
           isRefused(::open(other.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)) &&
           isRefused(::unlink(path.c_str())) && isRefused(::mkdir(other.c_str(), 0700)) &&
           isRefused(::symlink("file", other.c_str())) &&
           isRefused(::rename(path.c_str(), other.c_str()));
  }));
  EXPECT_EQ(contentsOf(file), "text");
}

TEST_F(ConfinementTest, RefusesToStartAProgram) {
  EXPECT_TRUE(holdsInChild([] {
    return forbidWritingAndStarting() &&
           isRefused(::execl("/bin/true", "true", static_cast<char*>(nullptr)));
  }));
}

TEST_F(ConfinementTest, HoldsForChildren) {
  EXPECT_TRUE(holdsInChild([this] {
    return forbidWritingAndStarting() &&
           holdsInChild([this] { return isRefused(::unlink(file.c_str())); });
  }));
}

TEST(Confinement, ForbidsNewPrivileges) {
  EXPECT_TRUE(holdsInChild([] {
    const bool wasAllowed = ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 0;
    forbidNewPrivileges();
    return wasAllowed && ::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1;
  }));
}

} // namespace
} // namespace tidewell::test
