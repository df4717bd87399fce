#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tidewell::test {

/// A simulated process: descriptors, a status, and who plays it.
struct VirtualProcess {
  pid_t id = 0;
  std::string executable;
  std::vector<std::string> arguments;
  std::map<int, FileDescriptor> descriptors; // by number in the process
  FileDescriptor exited;                     // eventfd, readable when it has ended
  bool ignoresTermination = false;
  std::function<void()> ended; // called once at its end
  bool isAlive = true;
  bool isOrphan = false;
  int status = 0; // as from waitpid

  void exit(int code) { end(code << 8); }
  void die(int signal) { end(signal); }

private:
  void end(int how);
};

/// The kernel's process table for the program's code, which spawns, kills and awaits processes here
/// while this object lives. One at a time.
class VirtualProcesses {
public:
  using Pointer = std::shared_ptr<VirtualProcess>;
  /// Plays the process; false if its program cannot be started.
  using Play = std::function<bool(const Pointer& process)>;

  explicit VirtualProcesses(Play play);
  VirtualProcesses(VirtualProcesses&&) = delete;
  ~VirtualProcesses();

  /// The parent has ended; its remaining children belong to nobody.
  void orphanAll();

  [[nodiscard]] std::size_t count() const { return m_processes.size(); }
  /// The number of signals to processes that are not children, and of blocking waits.
  [[nodiscard]] int faults() const { return m_faults; }

  // The kernel's functions.
  pid_t spawn(const std::string& executable, const std::vector<std::string>& arguments,
              std::map<int, FileDescriptor> descriptors);
  int open(pid_t id);
  int kill(pid_t id, int signal);
  pid_t wait(pid_t id, int* status, int options);

  [[nodiscard]] static VirtualProcesses& current();
  /// Whether `open` last returned this descriptor.
  [[nodiscard]] static bool isProcess(int descriptor);

private:
  Play m_play;
  int m_opened = -1;
  std::map<pid_t, Pointer> m_processes;
  pid_t m_lastId = 1000;
  int m_faults = 0;
};

} // namespace tidewell::test
