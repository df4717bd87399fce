#include "helpers/nettop/ProcessNamespace.h"

#include <sys/stat.h>

namespace tidewell::nettop {

namespace {

// Fixed by the kernel (PROC_PID_INIT_INO).
constexpr ino_t firstNamespace = 0xEFFFFFFC;

} // namespace

bool isFirstProcessNamespace() {
  struct stat status {};
  return ::stat("/proc/self/ns/pid", &status) != 0 || status.st_ino == firstNamespace;
}

} // namespace tidewell::nettop
