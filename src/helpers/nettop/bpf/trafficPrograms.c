#include "trafficPrograms.h"

#include <errno.h>

#include "traffic.lskel.h"

int loadTrafficPrograms(struct TrafficPrograms* programs) {
  struct traffic* const skeleton = traffic__open();
  if (!skeleton) {
    return -ENOMEM;
  }
  const int error = traffic__load(skeleton);
  if (error < 0) {
    traffic__destroy(skeleton);
    return error;
  }
  programs->countReceived = skeleton->progs.countReceived.prog_fd;
  programs->countSent = skeleton->progs.countSent.prog_fd;
  programs->noteMaker = skeleton->progs.noteMaker.prog_fd;
  programs->noteCloser = skeleton->progs.noteCloser.prog_fd;
  programs->nameProcesses = skeleton->progs.nameProcesses.prog_fd;
  programs->findHolders = skeleton->progs.findHolders.prog_fd;
  programs->sockets = skeleton->maps.sockets.map_fd;
  programs->processes = skeleton->maps.processes.map_fd;
  programs->control = &skeleton->bss->control;
  skel_free(skeleton);
  return 0;
}
