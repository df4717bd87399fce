#include "platform/linux/process/Confinement.h"

#include "platform/linux/process/SystemCallFilter.h"

#include <cstdint>

#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tidewell {
namespace {

// All write and execute rights of Landlock's first version. Of the later ones, the two that change
// files are added where the kernel supports them.
constexpr std::uint64_t changes =
    LANDLOCK_ACCESS_FS_EXECUTE | LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
    LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR | LANDLOCK_ACCESS_FS_MAKE_DIR |
    LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK | LANDLOCK_ACCESS_FS_MAKE_FIFO |
    LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

// Defined in linux/landlock.h since kernels 5.19 and 6.2.
constexpr std::uint64_t linkElsewhere = 1U << 13;
constexpr long linkElsewhereVersion = 2;
constexpr std::uint64_t truncate = 1U << 14;
constexpr long truncateVersion = 3;

std::uint64_t changesIn(long version) {
  return changes | (version >= linkElsewhereVersion ? linkElsewhere : 0) |
         (version >= truncateVersion ? truncate : 0);
}

bool restrictFiles() {
  const long version =
      ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) {
    return false;
  }
  landlock_ruleset_attr rules{};
  rules.handled_access_fs = changesIn(version);
  const long ruleset = ::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0);
  if (ruleset < 0) {
    return false;
  }
  const bool holds = ::syscall(SYS_landlock_restrict_self, ruleset, 0) == 0;
  ::close(static_cast<int>(ruleset));
  return holds;
}

} // namespace

void forbidNewPrivileges() { ::prctl(PR_SET_NO_NEW_PRIVS, 1UL, 0UL, 0UL, 0UL); }

bool confineToNetwork() {
  forbidNewPrivileges();
  const bool isFiltered = filterSystemCalls();
  return restrictFiles() && isFiltered;
}

} // namespace tidewell
