#include "platform/linux/files/AtomicFile.h"

#include "platform/linux/files/FilePath.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell {

namespace {

constexpr mode_t permissionBits = 07777;

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

// An owner that cannot be kept (another user's file in a directory of one's own) is no failure.
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

// Zero, or the error. Never replaces a file.
int renameOnto(const std::string& from, const std::string& to) {
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

} // namespace

AtomicFile::AtomicFile(std::string path, mode_t mode)
    : m_path(std::move(path)), m_newPath(directoryOf(m_path) + "/." + nameOf(m_path) + ".new"),
      m_mode(mode) {}

AtomicFile::~AtomicFile() {
  if (m_isPrepared) {
    ::unlink(m_newPath.c_str());
  }
}

std::error_code AtomicFile::prepare(std::string_view contents) {
  // What a writer left behind that was killed, or a trap laid by somebody else.
  ::unlink(m_newPath.c_str());
  const FileDescriptor file(
      ::open(m_newPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file.isOpen()) {
    return lastError();
  }
  m_isPrepared = true;
  takeOver(file, m_path, m_mode);
  return writeAll(file, contents);
}

std::error_code AtomicFile::commit() {
  if (::rename(m_newPath.c_str(), m_path.c_str()) != 0) {
    return lastError();
  }
  m_isPrepared = false;
  const FileDescriptor directory(
      ::open(directoryOf(m_path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // The contents are in place; a file system that cannot sync a directory is no failure.
  ::fsync(directory.get());
  return {};
}

std::error_code keepAside(const std::string& path) {
  constexpr int mostNames = 100;
  const std::string aside = path + ".broken-" + timeStamp();
  int error = renameOnto(path, aside);
  for (int number = 1; error == EEXIST && number < mostNames; ++number) {
    error = renameOnto(path, aside + "-" + std::to_string(number));
  }
  return error == ENOENT ? std::error_code{} : std::error_code{error, std::generic_category()};
}

} // namespace tidewell
