#include "platform/linux/files/FileReading.h"

#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell {

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
  // Reads one byte more than the size, to notice a file that grows.
  std::string contents(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t size = 0;
  for (ssize_t count = 1; count != 0 && size < contents.size();) {
    count = ::read(file.get(), contents.data() + size, contents.size() - size);
    if (count < 0 && errno != EINTR) {
      return {Outcome::unreadable, {}};
    }
    size += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  if (size == contents.size()) {
    return {Outcome::unreadable, {}};
  }
  contents.resize(size);
  return {Outcome::read, std::move(contents)};
}

} // namespace tidewell
