#include "helpers/nettop/BpfRoute.h"

#include "helpers/nettop/BpfCalls.h"
#include "helpers/nettop/ControlGroups.h"
#include "helpers/nettop/Privileges.h"
#include "helpers/nettop/ProcessNamespace.h"
#include "helpers/nettop/Second.h"
#include "helpers/nettop/TrafficTable.h"
#include "helpers/nettop/TunnelDevices.h"
#include "helpers/nettop/bpf/trafficPrograms.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include <sys/socket.h>

namespace tidewell::nettop {

namespace {

constexpr std::size_t batchSize = 1024;

Measurement failure(const char* what, int number = errno) {
  return {{}, std::string(what) + ": " + std::generic_category().message(number)};
}

/// The programs at work, until it is destroyed.
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

/// Leaves them unmarked where the kernel does not tell namespaces apart (before 5.14).
void markTunnels(Control& control) {
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  socklen_t size = sizeof control.network;
  if (::getsockopt(socket.get(), SOL_SOCKET, SO_NETNS_COOKIE, &control.network, &size) != 0) {
    return;
  }
  for (const std::uint32_t device : tunnelDevices()) {
    if (device / 64 < deviceWords) {
      control.tunnelDevices[device / 64] |= std::uint64_t{1} << (device % 64);
      control.hasTunnels = 1;
    }
  }
}

void enter(Control& control, Phase phase) { std::atomic_ref(control.phase).store(phase); }

bool addSockets(int sockets, TrafficTable& table) {
  std::array<std::uint64_t, batchSize> keys{};
  std::vector<SocketTraffic> values(batchSize);
  std::uint32_t position = 0;
  for (bool isFirst = true;; isFirst = false) {
    const BatchStep step =
        nextEntries(sockets, isFirst, position, keys.data(), values.data(), batchSize);
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
  if (!addSockets(programs.sockets, table)) {
    return failure("the table of sockets");
  }
  for (const std::uint32_t owner : table.owners()) {
    ProcessRecord record{};
    if (lookUp(programs.processes, &owner, &record)) {
      table.name(owner, record);
    }
  }
  return {table.rows(), {}};
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
  TrafficPrograms programs{};
  if (const int error = loadTrafficPrograms(&programs); error < 0) {
    return failure("loading the programs", -error);
  }
  markTunnels(*programs.control);
  const FileDescriptor names = makeIterator(programs.nameProcesses);
  const FileDescriptor holders = makeIterator(programs.findHolders);
  Hooks hooks = attach(programs, groups);
  if (!names.isOpen() || !holders.isOpen() || !hooks.areAttached()) {
    return failure("attaching the programs");
  }
  keepOnly({Capability::bpf});
  if (!runIterator(names)) {
    return failure("the names of the processes");
  }
  const Second second;
  enter(*programs.control, counting);
  second.wait();
  enter(*programs.control, naming);
  hooks.sent.reset();
  hooks.received.reset();
  if (!runIterator(holders)) {
    return failure("the holders of the sockets");
  }
  hooks = {};
  return collect(programs);
}

} // namespace tidewell::nettop
