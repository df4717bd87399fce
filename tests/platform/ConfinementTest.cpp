#include "platform/linux/process/Confinement.h"

#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/process/SystemCallFilter.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <linux/landlock.h>
#include <netdb.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
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

bool isRefused(long result) { return result != 0 && (errno == EACCES || errno == EXDEV); }

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
    if (!confineToNetwork()) {
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
    return confineToNetwork() && isRefused(::open(path.c_str(), O_WRONLY | O_CLOEXEC)) &&
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
    return confineToNetwork() &&
           isRefused(::execl("/bin/true", "true", static_cast<char*>(nullptr)));
  }));
}

TEST_F(ConfinementTest, RefusesToLookIntoAnotherProgram) {
  const pid_t parent = ::getpid();
  EXPECT_TRUE(holdsInChild([parent] {
    return confineToNetwork() && ::ptrace(PTRACE_ATTACH, parent, nullptr, nullptr) != 0 &&
           ::open(("/proc/" + std::to_string(parent) + "/mem").c_str(), O_RDONLY | O_CLOEXEC) < 0;
  }));
}

TEST_F(ConfinementTest, HoldsForChildren) {
  EXPECT_TRUE(holdsInChild([this] {
    return confineToNetwork() && holdsInChild([this] { return isRefused(::unlink(file.c_str())); });
  }));
}

/// What needs no Landlock.
class SystemCallFilterTest : public testing::Test {
protected:
  void SetUp() override {
    if (!holdsInChild([] { return forbidNewPrivileges(), filterSystemCalls(); })) {
      GTEST_SKIP() << "no filters of system calls on this machine";
    }
  }

  bool holdsConfined(auto&& work) {
    return holdsInChild([&work] { return confineToNetwork(), work(); });
  }
};

bool opens(int family) {
  return FileDescriptor(::socket(family, SOCK_DGRAM | SOCK_CLOEXEC, 0)).isOpen();
}

TEST_F(SystemCallFilterTest, LeavesOnlySocketsOfTheNetwork) {
  EXPECT_TRUE(opens(AF_UNIX));
  EXPECT_TRUE(holdsConfined([] {
    return !opens(AF_UNIX) && errno == EAFNOSUPPORT && opens(AF_INET) && opens(AF_INET6) &&
           opens(AF_NETLINK);
  }));
  EXPECT_TRUE(holdsConfined([] {
    constexpr long entries = 1;
    std::array<char, 256> parameters{};
    return ::syscall(SYS_io_uring_setup, entries, parameters.data()) < 0 && errno == ENOSYS;
  }));
}

TEST_F(SystemCallFilterTest, LeavesNamesOfHostsToBeLookedUp) {
  EXPECT_TRUE(holdsConfined([] {
    addrinfo* found = nullptr;
    const bool isFound = ::getaddrinfo("localhost", nullptr, nullptr, &found) == 0;
    ::freeaddrinfo(found);
    return isFound;
  }));
}

TEST_F(SystemCallFilterTest, RefusesSignalsToOthersButNotToItself) {
  const pid_t parent = ::getpid();
  ASSERT_EQ(::kill(parent, 0), 0);
  EXPECT_TRUE(holdsConfined([parent] {
    return isRefused(::kill(parent, 0)) && isRefused(::syscall(SYS_tgkill, parent, parent, 0)) &&
           ::syscall(SYS_tgkill, ::getpid(), ::getpid(), 0) == 0;
  }));
}

TEST_F(SystemCallFilterTest, RefusesToLimitOthersButNotItself) {
  const pid_t parent = ::getpid();
  rlimit limit{};
  ASSERT_EQ(::prlimit(parent, RLIMIT_CORE, nullptr, &limit), 0);
  EXPECT_TRUE(holdsConfined([parent] {
    rlimit found{};
    return isRefused(::prlimit(parent, RLIMIT_CORE, nullptr, &found)) &&
           isRefused(::setpriority(PRIO_PROCESS, static_cast<id_t>(parent), 0)) &&
           ::getrlimit(RLIMIT_CORE, &found) == 0 && ::setrlimit(RLIMIT_CORE, &found) == 0;
  }));
}

TEST_F(SystemCallFilterTest, RefusesToStartAProgram) {
  EXPECT_TRUE(holdsInChild([] {
    forbidNewPrivileges();
    return filterSystemCalls() &&
           isRefused(::execl("/bin/true", "true", static_cast<char*>(nullptr)));
  }));
}

TEST_F(SystemCallFilterTest, RefusesToChangeWhatIsKnownOfAFile) {
  const TemporaryDirectory directory;
  const std::string file = (directory / "file").string();
  writeInPlace(file, "text");
  EXPECT_TRUE(holdsConfined([&file] {
    const char* const path = file.c_str();
    return isRefused(::chmod(path, 0777)) && isRefused(::fchmodat(AT_FDCWD, path, 0777, 0)) &&
           isRefused(::chown(path, ::getuid(), ::getgid())) && isRefused(::truncate(path, 0)) &&
           isRefused(::utimensat(AT_FDCWD, path, nullptr, 0)) &&
           isRefused(::setxattr(path, "user.mark", "x", 1, 0));
  }));
}

TEST_F(SystemCallFilterTest, RefusesCallsOfOtherProcessors) {
#ifdef __x86_64__
  EXPECT_TRUE(holdsConfined([] {
    constexpr long x32 = 0x40000000;
    return isRefused(::syscall(x32 + SYS_getpid));
  }));
#endif
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
