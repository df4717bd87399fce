/* The programs that count in the kernel: loading them, and what they are reached by. */
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
  int processes;
  struct Control* control;
};

/* Loads the programs, which then run nowhere yet; they stay loaded until the process ends. Gives 0,
 * or the negated number of the error. Needs CAP_BPF, CAP_PERFMON and CAP_NET_ADMIN. */
int loadTrafficPrograms(struct TrafficPrograms* programs);

#ifdef __cplusplus
}
#endif
