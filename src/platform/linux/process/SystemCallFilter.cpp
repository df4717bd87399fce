#include "platform/linux/process/SystemCallFilter.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tidewell {
namespace {

#if defined(__x86_64__) && defined(__LP64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__) && defined(__LP64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_AARCH64;
#elif defined(__riscv) && defined(__LP64__)
constexpr std::uint32_t architecture = AUDIT_ARCH_RISCV64;
#else
constexpr std::uint32_t architecture = 0;
#endif

// The numbers of x32's calls, which mean the same on x86-64, begin here.
constexpr std::uint32_t otherCalls = 0x40000000;

// Of kernels that are newer than our headers; the same on every processor.
constexpr std::uint32_t callFchmodat2 = 452;
constexpr std::uint32_t callSetxattrat = 463;
constexpr std::uint32_t callRemovexattrat = 466;
constexpr std::uint32_t callFileSetattr = 469;

constexpr auto refused = std::to_array<std::uint32_t>({
    // programs
    SYS_execve,
    SYS_execveat,
    // how other processes run; prlimit64 is below
    SYS_setpriority,
    SYS_sched_setscheduler,
    SYS_sched_setparam,
    SYS_sched_setattr,
    SYS_sched_setaffinity,
    SYS_ioprio_set,
    // what processes share
    SYS_shmat,
    SYS_shmctl,
    SYS_semctl,
    SYS_msgctl,
    SYS_mq_open,
    SYS_mq_unlink,
    SYS_keyctl,
    // signals; tgkill is below
    SYS_kill,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
    SYS_pidfd_send_signal,
    // files
    SYS_fchmod,
    SYS_fchmodat,
    callFchmodat2,
    SYS_fchown,
    SYS_fchownat,
    SYS_utimensat,
    SYS_truncate,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    callSetxattrat,
    SYS_removexattr,
    SYS_lremovexattr,
    SYS_fremovexattr,
    callRemovexattrat,
    callFileSetattr,
#ifdef SYS_chmod // and the other old forms
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
#endif
});

constexpr std::uint32_t allow = SECCOMP_RET_ALLOW;
constexpr std::uint32_t fail(int error) {
  return SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error);
}

/// The filter's program.
class Filter {
public:
  void load(std::size_t offset) {
    m_code.push_back({BPF_LD | BPF_W | BPF_ABS, 0, 0, static_cast<std::uint32_t>(offset)});
  }
  void decide(std::uint32_t action) { m_code.push_back({BPF_RET | BPF_K, 0, 0, action}); }

  /// Skips so many instructions, depending on what was loaded last.
  void skip(std::uint16_t comparison, std::uint32_t value, std::size_t ifTrue,
            std::size_t ifFalse) {
    m_code.push_back({static_cast<std::uint16_t>(BPF_JMP | comparison | BPF_K),
                      static_cast<std::uint8_t>(ifTrue), static_cast<std::uint8_t>(ifFalse),
                      value});
  }

  /// Decides about a call by one of its arguments: `known` for these values, else `other`.
  void decideBy(std::uint32_t call, std::size_t argument,
                std::initializer_list<std::uint32_t> values, std::uint32_t known,
                std::uint32_t other) {
    constexpr std::size_t lowHalf = std::endian::native == std::endian::big ? 4 : 0;
    skip(BPF_JEQ, call, 0, values.size() + 3);
    load(offsetof(seccomp_data, args) + 8 * argument + lowHalf);
    std::size_t left = values.size();
    for (const std::uint32_t value : values) {
      skip(BPF_JEQ, value, left--, 0);
    }
    decide(other);
    decide(known);
  }

  [[nodiscard]] bool install() {
    const sock_fprog program{static_cast<unsigned short>(m_code.size()), m_code.data()};
    return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  }

private:
  std::vector<sock_filter> m_code;
};

} // namespace

bool filterSystemCalls() {
  if (architecture == 0) {
    return false;
  }
  Filter filter;
  filter.load(offsetof(seccomp_data, arch));
  filter.skip(BPF_JEQ, architecture, 1, 0);
  filter.decide(fail(EACCES));
  filter.load(offsetof(seccomp_data, nr));
  filter.skip(BPF_JGE, otherCalls, 0, 1);
  filter.decide(fail(EACCES));
  for (const std::uint32_t call : refused) {
    filter.skip(BPF_JEQ, call, 0, 1);
    filter.decide(fail(EACCES));
  }
  // As on a kernel without it, so that libraries do without.
  filter.skip(BPF_JEQ, SYS_io_uring_setup, 0, 1);
  filter.decide(fail(ENOSYS));
  filter.decideBy(SYS_socket, 0, {AF_INET, AF_INET6, AF_NETLINK}, allow, fail(EAFNOSUPPORT));
  // `abort` sends itself a signal. A limit of 0 seconds would end another process.
  const auto self = static_cast<std::uint32_t>(::getpid());
  filter.decideBy(SYS_tgkill, 0, {self}, allow, fail(EACCES));
  filter.decideBy(SYS_prlimit64, 0, {0, self}, allow, fail(EACCES));
  filter.decideBy(SYS_ioctl, 1, {TIOCSTI}, fail(EACCES), allow);
  filter.decide(allow);
  return filter.install();
}

} // namespace tidewell
