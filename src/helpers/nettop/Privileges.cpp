#include "helpers/nettop/Privileges.h"

#include "platform/linux/process/Confinement.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tidewell::nettop {
namespace {

using Sets = std::array<__user_cap_data_struct, 2>; // the lower 32 capabilities, then the others

__user_cap_header_struct header() { return {_LINUX_CAPABILITY_VERSION_3, 0}; }

bool openStandardDescriptors() {
  // Otherwise the next file that is opened would become the standard output, say.
  while (true) {
    const int descriptor = ::open("/dev/null", O_RDWR);
    if (descriptor < 0) {
      return false;
    }
    if (descriptor > STDERR_FILENO) {
      ::close(descriptor);
      return true;
    }
  }
}

} // namespace

void keepOnly(std::initializer_list<Capability> capabilities) {
  auto version = header();
  Sets sets{};
  if (::syscall(SYS_capget, &version, sets.data()) != 0) {
    return;
  }
  Sets wanted{};
  for (const Capability capability : capabilities) {
    const auto number = static_cast<unsigned>(capability);
    wanted.at(number / 32).permitted |= 1U << (number % 32);
  }
  for (std::size_t word = 0; word < sets.size(); ++word) {
    sets[word].permitted &= wanted[word].permitted;
    sets[word].effective = sets[word].permitted;
    sets[word].inheritable = 0;
  }
  ::syscall(SYS_capset, &version, sets.data());
}

bool seclude() {
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  static_cast<void>(std::signal(SIGTERM, SIG_DFL));
  static_cast<void>(std::signal(SIGPIPE, SIG_DFL));
  ::clearenv();
  forbidNewPrivileges();
  ::prctl(PR_SET_DUMPABLE, 0);
  ::prctl(PR_SET_TIMERSLACK, 1UL);
  ::syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, 0);
  keepOnly({Capability::readAllFiles, Capability::netAdmin, Capability::trace, Capability::perfmon,
            Capability::bpf});
  return openStandardDescriptors();
}

} // namespace tidewell::nettop
