#include "platform/linux/DirectoryLock.h"

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
  for (int attempt = 0; attempt < attempts; ++attempt) {
    if (::flock(m_directory.get(), LOCK_EX | LOCK_NB) == 0) {
      m_isHeld = true;
      return;
    }
    if (errno != EWOULDBLOCK && errno != EINTR) {
      m_isHeld = m_directory.isOpen();
      return;
    }
    std::this_thread::sleep_for(betweenAttempts);
  }
}

} // namespace tidewell
