#include "helpers/nettop/AttachmentSlot.h"

#include <fcntl.h>

namespace tidewell::nettop {
namespace {

// A slot is a lock on a byte of this file, because nobody else can lock it: its mode is 0600, and
// only CAP_NET_ADMIN counts as the owner of all in /proc/sys/net. Every kernel with TCP has it. It
// is neither read nor written.
constexpr const char* lockFile = "/proc/sys/net/ipv4/tcp_fastopen_key";

constexpr std::int64_t slotsOfAll = 8;
constexpr std::int64_t slotsOfUser = 2;

/// Locks one of so many bytes.
bool lockOne(int file, std::int64_t first, std::int64_t count) {
  for (std::int64_t byte = first; byte < first + count; ++byte) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    // Held by the open file, not the process.
    if (::fcntl(file, F_OFD_SETLK, &lock) == 0) {
      return true;
    }
  }
  return false;
}

} // namespace

bool takeAttachmentSlot(std::uint32_t user) {
  if (user == 0) {
    return true;
  }
  // Stays open: the kernel releases the locks when the process ends.
  const int file = ::open(lockFile, O_RDWR | O_CLOEXEC);
  return file >= 0 && lockOne(file, slotsOfAll + user * slotsOfUser, slotsOfUser) &&
         lockOne(file, 0, slotsOfAll);
}

} // namespace tidewell::nettop
