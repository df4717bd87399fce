#include "platform/linux/files/FileReplacement.h"

#include "platform/linux/files/FilePath.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell {
namespace {

constexpr mode_t permissionBits = 07777;

// Changing a small file takes milliseconds. Whoever holds the lock longer hangs.
constexpr int lockAttempts = 200;
constexpr std::chrono::milliseconds betweenAttempts{5};

std::error_code writeAll(const FileDescriptor& file, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t count = ::write(file.get(), contents.data(), contents.size());
    if (count > 0) {
      contents.remove_prefix(static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return lastError();
    }
  }
  return ::fsync(file.get()) == 0 ? std::error_code{} : lastError();
}

// Failing to keep the owner (another user's file in the user's own directory) is no error.
void takeOver(const FileDescriptor& file, const std::string& path, mode_t mode) {
  struct stat old {};
  if (::lstat(path.c_str(), &old) == 0 && S_ISREG(old.st_mode)) {
    mode = old.st_mode & permissionBits;
    [[maybe_unused]] const int result = ::fchown(file.get(), old.st_uid, old.st_gid);
  }
  ::fchmod(file.get(), mode);
}

std::string timeStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  ::gmtime_r(&now, &utc);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%d-%H%M%S", &utc)};
}

// Gives a file a second name, or a new one if it cannot have two. Never replaces a file. Returns
// zero or the error.
int addName(const std::string& from, const std::string& to) {
  if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) == 0) {
    return 0;
  }
  if (errno == EEXIST || errno == ENOENT) {
    return errno;
  }
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
    return 0;
  }
  return errno;
}

std::error_code keepAside(const std::string& path) {
  constexpr int mostNames = 100;
  const std::string aside = path + ".broken-" + timeStamp();
  int error = addName(path, aside);
  for (int number = 1; error == EEXIST && number < mostNames; ++number) {
    error = addName(path, aside + "-" + std::to_string(number));
  }
  return error == ENOENT ? std::error_code{} : std::error_code{error, std::generic_category()};
}

std::error_code writeNew(const std::string& newPath, const std::string& path,
                         std::string_view contents, mode_t mode) {
  // Left over from a killed writer, or a trap.
  ::unlink(newPath.c_str());
  const FileDescriptor file(
      ::open(newPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file.isOpen()) {
    return lastError();
  }
  takeOver(file, path, mode);
  return writeAll(file, contents);
}

} // namespace

DirectoryLock::DirectoryLock(const std::string& directory) : m_error(makeDirectories(directory)) {
  if (m_error) {
    return;
  }
  m_directory = FileDescriptor(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!m_directory.isOpen()) {
    m_error = lastError();
    return;
  }
  for (int attempt = 0; attempt < lockAttempts; ++attempt) {
    if (::flock(m_directory.get(), LOCK_EX | LOCK_NB) == 0 ||
        (errno != EWOULDBLOCK && errno != EINTR)) {
      return;
    }
    std::this_thread::sleep_for(betweenAttempts);
  }
  m_error = std::make_error_code(std::errc::timed_out);
}

std::error_code replaceFile(const std::string& path, std::string_view contents, mode_t mode,
                            OldFile old) {
  const std::string newPath = directoryOf(path) + "/." + nameOf(path) + ".new";
  std::error_code error = writeNew(newPath, path, contents, mode);
  if (!error && old == OldFile::keptAside) {
    error = keepAside(path);
  }
  if (!error && ::rename(newPath.c_str(), path.c_str()) != 0) {
    error = lastError();
  }
  if (error) {
    ::unlink(newPath.c_str());
    return error;
  }
  const FileDescriptor directory(
      ::open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // The contents are in place. A file system that cannot sync a directory is no error.
  ::fsync(directory.get());
  return {};
}

} // namespace tidewell
