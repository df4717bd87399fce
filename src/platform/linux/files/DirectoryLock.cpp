#include "platform/linux/files/DirectoryLock.h"

#include "platform/linux/files/FilePath.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>

namespace tidewell {

namespace {

// A change of a small file takes milliseconds; whoever holds the lock longer hangs.
constexpr int attempts = 200;
constexpr std::chrono::milliseconds betweenAttempts{5};

} // namespace

DirectoryLock::DirectoryLock(const std::string& directory)
    : m_directory(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (!m_directory.isOpen()) {
    m_error = lastError();
    return;
  }
  for (int attempt = 0; attempt < attempts; ++attempt) {
    if (::flock(m_directory.get(), LOCK_EX | LOCK_NB) == 0 ||
        (errno != EWOULDBLOCK && errno != EINTR)) {
      return;
    }
    std::this_thread::sleep_for(betweenAttempts);
  }
  m_error = std::make_error_code(std::errc::timed_out);
}

} // namespace tidewell
