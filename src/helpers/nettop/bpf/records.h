/* What the programs in the kernel leave for the program that loaded them. */
#pragma once

#include <linux/types.h>

enum {
  longestName = 64, /* with the 0 at its end */
  deviceWords = 64,
  mostSockets = 65536,
  mostProcesses = 16384,
};

/* What one socket has moved, as IP bytes on everything but the loopback. */
struct SocketTraffic {
  __u64 received;
  __u64 sent;
  __u64 tunnelReceived; /* the part of it that went over the devices of `tunnelDevices` */
  __u64 tunnelSent;
  __u32 owner;     /* the process, 0 when it is not known */
  __u16 isHeld;    /* whether the owner was found to hold the socket, or to have closed it */
  __u16 mayTunnel; /* whether the devices that it used can have been those of `tunnelDevices` */
};

/* A process that is or was. */
struct ProcessRecord {
  __u32 user;
  __u32 servesTunnel;     /* whether it holds /dev/net/tun open */
  char name[longestName]; /* NOLINT(modernize-avoid-c-arrays): this is C, too */
};

enum Phase {
  idle,
  counting, /* packets, and who makes and closes sockets */
  naming,   /* the latter alone */
};

/* Shared memory: the loader writes `phase` and what is of tunnels, the programs the rest. */
struct Control {
  __u32 phase;
  __u32 lost; /* packets of sockets that found no room in the table */
  __u32 lastHolder;
  __u32 hasTunnels;
  __u64 network; /* the cookie of the network namespace that the tunnels are of */
  /* One bit for each interface index. NOLINTNEXTLINE(modernize-avoid-c-arrays): this is C, too */
  __u64 tunnelDevices[deviceWords];
};
