#include "helpers/nettop/ControlGroups.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

namespace tidewell::nettop {

FileDescriptor openControlGroups() {
  // By itself, or beside version 1.
  for (const char* const place : {"/sys/fs/cgroup", "/sys/fs/cgroup/unified"}) {
    FileDescriptor directory(::open(place, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct statfs status {};
    if (directory.isOpen() && ::fstatfs(directory.get(), &status) == 0 &&
        status.f_type == CGROUP2_SUPER_MAGIC) {
      return directory;
    }
  }
  return {};
}

} // namespace tidewell::nettop
