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

/// A process that is none: descriptors, a status, and whoever plays it.
struct VirtualProcess {
  pid_t id = 0;
  std::string executable;
  std::vector<std::string> arguments;
  std::map<int, FileDescriptor> descriptors; // by the number that the process knows
  FileDescriptor exited;                     // eventfd, readable when it has ended
  bool ignoresTermination = false;
  std::function<void()> ended; // called once, when it is no more
  bool isAlive = true;
  bool isOrphan = false;
  int status = 0; // as waitpid tells it

  void exit(int code) { end(code << 8); }
  void die(int signal) { end(signal); }

private:
  void end(int how);
};

/// The kernel's table of processes, as the program's own code meets it: what it spawns, kills and
/// waits for is here while this object lives. One at a time.
class VirtualProcesses {
public:
  using Pointer = std::shared_ptr<VirtualProcess>;
  /// Plays the process, or gives false when its program cannot be started.
  using Play = std::function<bool(const Pointer& process)>;

  explicit VirtualProcesses(Play play);
  VirtualProcesses(const VirtualProcesses&) = delete;
  VirtualProcesses& operator=(const VirtualProcesses&) = delete;
  ~VirtualProcesses();

  /// The parent is gone: whom it left behind belongs to nobody.
  void orphanAll();

  [[nodiscard]] std::size_t count() const { return m_processes.size(); }
  /// Signals to processes that are no children, and waits for some that live: never seen so far.
  [[nodiscard]] int faults() const { return m_faults; }

  // What the kernel does.
  pid_t spawn(const std::string& executable, const std::vector<std::string>& arguments,
              std::map<int, FileDescriptor> descriptors);
  int open(pid_t id);
  int kill(pid_t id, int signal);
  pid_t wait(pid_t id, int* status, int options);

  [[nodiscard]] static VirtualProcesses& current();
  /// Whether `open` gave this descriptor last.
  [[nodiscard]] static bool isProcess(int descriptor);

private:
  Play m_play;
  int m_opened = -1;
  std::map<pid_t, Pointer> m_processes;
  pid_t m_lastId = 1000;
  int m_faults = 0;
};

} // namespace tidewell::test
