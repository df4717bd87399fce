#include "helpers/nettop/Measurement.h"

#include "helpers/nettop/AttachmentSlot.h"
#include "helpers/nettop/BpfCalls.h"
#include "helpers/nettop/Privileges.h"
#include "helpers/nettop/TrafficTable.h"
#include "helpers/nettop/bpf/trafficPrograms.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <linux/ethtool.h>
#include <linux/magic.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace tidewell::nettop {
namespace {

constexpr std::size_t batchSize = 1024;

constexpr unsigned long leastExpectedSockets = 2048;
constexpr unsigned long mostExpectedSockets = mostSockets / 2;

// How long the programs work after they were attached, whatever becomes of this process. They are
// attached for little more than the measured second, except on an overloaded machine.
constexpr int tenthsAttached = 20;

// The inode of the first process namespace, which the kernel fixes (PROC_PID_INIT_INO).
constexpr ino_t firstNamespace = 0xEFFFFFFC;

Measurement failure(const char* what, int number = errno) {
  return {{}, std::string(what) + ": " + std::generic_category().message(number)};
}

/// Whether process numbers here are those of the kernel itself, so not in a container that numbers
/// its own. True if the kernel does not say.
bool isFirstProcessNamespace() {
  struct stat status {};
  return ::stat("/proc/self/ns/pid", &status) != 0 || status.st_ino == firstNamespace;
}

/// Opens the root of the control groups of version 2 at one of its usual mount points. Closed if
/// there is none.
FileDescriptor openControlGroups() {
  // Alone, or beside version 1.
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

std::string_view text(const auto& field) {
  return {std::begin(field), std::find(std::begin(field), std::end(field), '\0')};
}

/// Whether a program serves this interface through /dev/net/tun. Excludes those that carry Ethernet
/// frames (tap), which belong to virtual machines.
bool isTunnel(const FileDescriptor& socket, std::string_view name) {
  ethtool_drvinfo driver{};
  driver.cmd = ETHTOOL_GDRVINFO;
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  request.ifr_data = std::bit_cast<char*>(&driver);
  return ::ioctl(socket.get(), SIOCETHTOOL, &request) == 0 && text(driver.driver) == "tun" &&
         text(driver.bus_info) == "tun";
}

/// How many sockets may move something, as a power of two. Every socket of a program is an open
/// file, and as many again may be opened meanwhile.
unsigned expectedSockets() {
  const FileDescriptor file(::open("/proc/sys/fs/file-nr", O_RDONLY | O_CLOEXEC));
  std::array<char, 64> text{};
  if (::read(file.get(), text.data(), text.size() - 1) <= 0) {
    return static_cast<unsigned>(mostExpectedSockets);
  }
  const unsigned long files = std::strtoul(text.data(), nullptr, 10);
  return std::bit_ceil(
      static_cast<unsigned>(std::clamp(2 * files, leastExpectedSockets, mostExpectedSockets)));
}

/// The tunnels of a network namespace.
struct Tunnels {
  std::uint64_t network = 0; // the namespace's cookie
  std::vector<std::uint32_t> devices;
};

/// Finds the tunnels of this network namespace. Finds none if the kernel cannot identify namespaces
/// (before 5.14).
Tunnels findTunnels() {
  Tunnels tunnels;
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  socklen_t size = sizeof tunnels.network;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_NETNS_COOKIE, &tunnels.network, &size) != 0) {
    return tunnels;
  }
  const std::unique_ptr<struct if_nameindex, decltype(&::if_freenameindex)> names(
      ::if_nameindex(), &::if_freenameindex);
  for (const auto* one = names.get(); one != nullptr && one->if_name != nullptr; ++one) {
    const std::uint32_t device = one->if_index;
    if (device / 64 < deviceWords && isTunnel(socket, one->if_name)) {
      tunnels.devices.push_back(device);
    }
  }
  return tunnels;
}

void mark(const Tunnels& tunnels, Control& control) {
  control.network = tunnels.network;
  for (const std::uint32_t device : tunnels.devices) {
    control.tunnelDevices[device / 64] |= std::uint64_t{1} << (device % 64);
  }
}

/// The attached programs, until it is destroyed.
struct Hooks {
  FileDescriptor received;
  FileDescriptor sent;
  FileDescriptor made;
  FileDescriptor closed;

  [[nodiscard]] bool areAttached() const {
    return received.isOpen() && sent.isOpen() && made.isOpen() && closed.isOpen();
  }
};

Hooks attach(const TrafficPrograms& programs, const FileDescriptor& groups) {
  Hooks hooks;
  hooks.closed = attachToGroup(programs.noteCloser, groups, BPF_CGROUP_INET_SOCK_RELEASE);
  hooks.made = attachToGroup(programs.noteMaker, groups, BPF_CGROUP_INET_SOCK_CREATE);
  hooks.received = attachToGroup(programs.countReceived, groups, BPF_CGROUP_INET_INGRESS);
  hooks.sent = attachToGroup(programs.countSent, groups, BPF_CGROUP_INET_EGRESS);
  return hooks;
}

void set(__u64& deadline, std::uint64_t nanoseconds) {
  std::atomic_ref(deadline).store(nanoseconds);
}

bool addSockets(int sockets, TrafficTable& table) {
  std::array<PrefixedCookie, batchSize> keys{}; // the longer keys of the two tables
  std::vector<SocketTraffic> values(batchSize);
  PrefixedCookie position{};
  for (bool isFirst = true;; isFirst = false) {
    const BatchStep step =
        nextEntries(sockets, isFirst, &position, keys.data(), values.data(), batchSize);
    for (std::size_t index = 0; index < step.count; ++index) {
      table.add(values[index]);
    }
    if (step.isLast) {
      return !step.hasFailed;
    }
  }
}

Measurement collect(const TrafficPrograms& programs) {
  TrafficTable table;
  if (!addSockets(programs.sockets, table) || !addSockets(programs.moreSockets, table)) {
    return failure("the table of sockets");
  }
  for (const std::uint32_t owner : table.owners()) {
    ProcessRecord record{};
    if (lookUp(programs.processes, &owner, &record)) {
      table.name(owner, record);
    }
  }
  const Control& control = *programs.control;
  table.addLost(control.lostReceived, control.lostSent);
  return {table.rows(), {}};
}

/// Measures with programs that are loaded.
Measurement measureWith(const TrafficPrograms& programs, const FileDescriptor& groups) {
  Control& control = *programs.control;
  const FileDescriptor names = makeIterator(programs.nameProcesses);
  const FileDescriptor holders = makeIterator(programs.findHolders);
  set(control.noteUntil, Second().nanosecondsAfter(tenthsAttached));
  Hooks hooks = attach(programs, groups);
  if (!names.isOpen() || !holders.isOpen() || !hooks.areAttached()) {
    return failure("attaching the programs");
  }
  keepOnly({Capability::bpf});
  if (!runIterator(names)) {
    return failure("the names of the processes");
  }
  const Second second;
  set(control.countUntil, second.nanosecondsAfter());
  second.wait();
  hooks.sent.reset();
  hooks.received.reset();
  if (std::atomic_ref(control.hasMoved).load() == 0) {
    return {};
  }
  if (!runIterator(holders)) {
    return failure("the holders of the sockets");
  }
  hooks = {};
  return collect(programs);
}

} // namespace

Measurement measureWithBpf() {
  if (!isFirstProcessNamespace()) {
    return {{}, "the kernel's process numbers are not those of this namespace"};
  }
  const FileDescriptor groups = openControlGroups();
  if (!groups.isOpen()) {
    return {{}, "there are no control groups of version 2"};
  }
  // Before loading: the tables take memory for as long as the process lives.
  if (!takeAttachmentSlot(::getuid())) {
    return {{}, "too many others are measuring"};
  }
  const Tunnels tunnels = findTunnels();
  TrafficPrograms programs{};
  const bool hasTunnels = !tunnels.devices.empty();
  if (const int error = loadTrafficPrograms(&programs, expectedSockets(), hasTunnels ? 1 : 0);
      error < 0) {
    return failure("loading the programs", -error);
  }
  mark(tunnels, *programs.control);
  return measureWith(programs, groups);
}

} // namespace tidewell::nettop
