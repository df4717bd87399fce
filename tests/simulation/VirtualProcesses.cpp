#include "VirtualProcesses.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <utility>

#include <sys/eventfd.h>
#include <sys/wait.h>

namespace tidewell::test {

namespace {

VirtualProcesses* table = nullptr;

} // namespace

void VirtualProcess::end(int how) {
  if (!std::exchange(isAlive, false)) {
    return;
  }
  status = how;
  descriptors.clear();
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = ::write(exited.get(), &one, sizeof one);
  if (const auto tell = std::exchange(ended, nullptr)) {
    tell();
  }
}

VirtualProcesses::VirtualProcesses(Play play) : m_play(std::move(play)) { table = this; }

VirtualProcesses::~VirtualProcesses() { table = nullptr; }

VirtualProcesses& VirtualProcesses::current() { return *table; }

void VirtualProcesses::orphanAll() {
  for (const auto& [id, process] : std::exchange(m_processes, {})) {
    process->isOrphan = true;
  }
}

pid_t VirtualProcesses::spawn(const std::string& executable,
                              const std::vector<std::string>& arguments,
                              std::map<int, FileDescriptor> descriptors) {
  auto process = std::make_shared<VirtualProcess>();
  process->id = ++m_lastId;
  process->executable = executable;
  process->arguments = arguments;
  process->descriptors = std::move(descriptors);
  process->exited = FileDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!m_play(process)) {
    return -1;
  }
  m_processes.emplace(process->id, process);
  return process->id;
}

int VirtualProcesses::open(pid_t id) {
  const auto found = m_processes.find(id);
  m_opened = found == m_processes.end() ? -1 : ::dup(found->second->exited.get());
  return m_opened;
}

bool VirtualProcesses::isProcess(int descriptor) {
  return table != nullptr && descriptor >= 0 && descriptor == std::exchange(table->m_opened, -1);
}

int VirtualProcesses::kill(pid_t id, int signal) {
  const auto found = m_processes.find(id);
  if (found == m_processes.end()) {
    ++m_faults;
    errno = ESRCH;
    return -1;
  }
  const Pointer process = found->second;
  if (signal == SIGKILL || !process->ignoresTermination) {
    process->die(signal);
  }
  return 0;
}

pid_t VirtualProcesses::wait(pid_t id, int* status, int options) {
  const auto found = m_processes.find(id);
  if (found == m_processes.end()) {
    ++m_faults;
    errno = ECHILD;
    return -1;
  }
  const Pointer process = found->second;
  if (process->isAlive && (options & WNOHANG) != 0) {
    return 0;
  }
  if (process->isAlive) {
    ++m_faults; // the program would block
    process->die(SIGKILL);
  }
  if (status != nullptr) {
    *status = process->status;
  }
  m_processes.erase(id);
  return id;
}

} // namespace tidewell::test
