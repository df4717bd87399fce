/* Loads the programs that count in the kernel. */
#pragma once

#include "records.h"

#ifdef __cplusplus
extern "C" {
#endif

/* File descriptors of programs and tables, and the memory that is shared with the programs. */
struct TrafficPrograms {
  int countReceived;
  int countSent;
  int noteMaker;
  int noteCloser;
  int nameProcesses;
  int findHolders;
  int sockets;
  int moreSockets; /* those for which `sockets` had no room */
  int processes;
  struct Control* control;
};

/* Loads the programs without attaching them; they stay loaded until the process ends. The table of
 * sockets is fast for `expectedSockets`, a power of two below `mostSockets`, and slower for the
 * others. `hasTunnels` is whether a bit of `tunnelDevices` will be set. Returns 0 or a negative
 * errno. Needs CAP_BPF, CAP_PERFMON and CAP_NET_ADMIN. */
int loadTrafficPrograms(struct TrafficPrograms* programs, unsigned expectedSockets, int hasTunnels);

#ifdef __cplusplus
}
#endif
