/* The data that the programs in the kernel share with the program that loaded them. */
#pragma once

#include <linux/types.h>

enum {
  longestName = 64, /* including the terminating 0 */
  deviceWords = 64,
  mostSockets = 65536,
  mostProcesses = 16384,
  mostRecentOwners = 4096,
  cookieBits = 64,
};

/* Who has a socket. */
struct SocketOwner {
  __u32 process;   /* 0 if unknown */
  __u16 isHeld;    /* whether the process holds the socket or has closed it */
  __u16 mayTunnel; /* whether its devices may be those of `tunnelDevices` */
};

/* The IP bytes that a socket has moved, without the loopback. */
struct SocketTraffic {
  __u64 received;
  __u64 sent;
  __u64 tunnelReceived; /* the part that went over the devices of `tunnelDevices` */
  __u64 tunnelSent;
  struct SocketOwner owner;
};

/* A cookie as the key of the second table of sockets, which looks up prefixes. */
struct PrefixedCookie {
  __u32 bits; /* `cookieBits` */
  __u32 cookie[2];
};

/* A process, running or not. */
struct ProcessRecord {
  __u32 user;
  __u32 servesTunnel; /* whether it holds /dev/net/tun open */
  char name[longestName];
};

/* Shared memory: the loader writes the deadlines and the tunnels' members, the programs the others.
 *
 * Deadlines are nanoseconds of CLOCK_MONOTONIC. The programs check them themselves, so that a
 * loader that is stopped while they are attached slows nobody down. They set a deadline that has
 * passed to 0, which costs the next packet no look at the clock. */
struct Control {
  __u64 countUntil;   /* packets */
  __u64 noteUntil;    /* who opens and closes sockets */
  __u64 lostReceived; /* bytes of sockets that did not fit the table */
  __u64 lostSent;
  __u32 lastHolder;
  __u32 hasMoved; /* whether any socket has moved something */
  __u64 network;  /* the cookie of the network namespace that the tunnels are of */
  __u64 tunnelDevices[deviceWords]; /* one bit for each interface index */
};
