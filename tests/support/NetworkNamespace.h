#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>

namespace tidewell::test {

/// Runs a command; whether it succeeded.
inline bool shell(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0; // NOLINT: a fixed test command
}

/// A new network namespace, entered by the calling thread, and by those it starts, while this
/// object lives.
class NetworkNamespace {
public:
  /// Null if the machine does not allow it.
  static std::unique_ptr<NetworkNamespace> enter() {
    FileDescriptor home(::open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC));
    if (::unshare(CLONE_NEWNET) != 0) {
      return nullptr;
    }
    auto network = std::unique_ptr<NetworkNamespace>(new NetworkNamespace(std::move(home)));
    if (!shell("ip link add trial0 type veth peer name trial1 && ip link del trial0")) {
      return nullptr;
    }
    return network;
  }
  NetworkNamespace(NetworkNamespace&&) = delete;
  ~NetworkNamespace() { EXPECT_EQ(::setns(m_home.get(), CLONE_NEWNET), 0); }

  /// The sysfs directory of this namespace's interfaces. The mount is private.
  std::string sysfsRoot() {
    const FileDescriptor context(::fsopen("sysfs", FSOPEN_CLOEXEC));
    EXPECT_EQ(::fsconfig(context.get(), FSCONFIG_CMD_CREATE, nullptr, nullptr, 0), 0);
    m_sysfs = FileDescriptor(::fsmount(context.get(), FSMOUNT_CLOEXEC, 0));
    EXPECT_TRUE(m_sysfs.isOpen());
    return "/proc/self/fd/" + std::to_string(m_sysfs.get());
  }

private:
  explicit NetworkNamespace(FileDescriptor home) : m_home(std::move(home)) {}

  FileDescriptor m_home;
  FileDescriptor m_sysfs;
};

} // namespace tidewell::test
