#include "platform/linux/files/FileReading.h"

#include "platform/linux/loop/FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell {

namespace {

// False when there is more than the limit, or an error.
bool readAll(const FileDescriptor& file, std::string& contents, std::size_t limit) {
  contents.resize(limit + 1);
  std::size_t size = 0;
  while (size < contents.size()) {
    const ssize_t count = ::read(file.get(), contents.data() + size, contents.size() - size);
    if (count == 0) {
      break;
    }
    if (count > 0) {
      size += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      return false;
    }
  }
  contents.resize(size);
  return size <= limit;
}

} // namespace

FileReading readFile(const std::string& path, std::size_t limit) {
  using Outcome = FileReading::Outcome;
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.isOpen()) {
    const bool isAbsent = errno == ENOENT || errno == ENOTDIR;
    return {isAbsent ? Outcome::absent : Outcome::unreadable, {}};
  }
  struct stat status {};
  if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0 ||
      static_cast<std::size_t>(status.st_size) > limit) {
    return {Outcome::unreadable, {}};
  }
  // One byte beyond the present size tells a file that grows from one that does not.
  FileReading reading{Outcome::read, {}};
  if (!readAll(file, reading.contents, static_cast<std::size_t>(status.st_size))) {
    return {Outcome::unreadable, {}};
  }
  return reading;
}

} // namespace tidewell
