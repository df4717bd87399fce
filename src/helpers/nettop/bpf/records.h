/* The data that the programs in the kernel share with the program that loaded them. */
#pragma once

#include <linux/types.h>

enum {
  longestName = 64, /* including the terminating 0 */
  deviceWords = 64,
  mostSockets = 65536,
  mostProcesses = 16384,
};

/* The IP bytes that a socket has moved, without the loopback. */
struct SocketTraffic {
  __u64 received;
  __u64 sent;
  __u64 tunnelReceived; /* the part that went over the devices of `tunnelDevices` */
  __u64 tunnelSent;
  __u32 owner;     /* the process; 0 if unknown */
  __u16 isHeld;    /* whether the owner holds the socket or has closed it */
  __u16 mayTunnel; /* whether its devices may be those of `tunnelDevices` */
};

/* A process, running or not. */
struct ProcessRecord {
  __u32 user;
  __u32 servesTunnel; /* whether it holds /dev/net/tun open */
  char name[longestName];
};

enum Phase {
  idle,
  counting, /* packets, and who opens and closes sockets */
  naming,   /* only who opens and closes sockets */
};

/* Shared memory: the loader writes `phase` and the tunnels' members, the programs the others. */
struct Control {
  __u32 phase;
  __u32 lost; /* packets of sockets that did not fit the table */
  __u32 lastHolder;
  __u32 hasTunnels;
  __u64 network; /* the cookie of the network namespace that the tunnels are of */
  __u64 tunnelDevices[deviceWords]; /* one bit for each interface index */
};
