/* Counts the bytes of every socket at the root of the control groups, and finds the process that
 * owns the socket. Loaded by the helper for the second that it measures. */
#include <linux/bpf.h>

#include <bpf/bpf_helpers.h>

#include "kernelFields.h"
#include "kernelTypes.h"
#include "records.h"

enum {
  loopback = 1, /* the index of the loopback in every network namespace */
  kernelThread = 0x00200000,
  tunDevice = 10 << 20 | 200, /* the kernel's number of /dev/net/tun */
  characterDevice = 0020000,
  fileType = 0170000,
  tcp = 6,
  hopByHop = 0,
  functionType = 12, /* BTF_KIND_FUNC */
  byteOffset = 0,    /* BPF_CORE_FIELD_BYTE_OFFSET */
};

/* The loader defines the tables and what is shared with it, and writes their addresses where the
 * programs name them. So the object file describes no data, which the kernel would have to check.
 */
#define ADDRESS(type, name)                                                                        \
  ({                                                                                               \
    type address;                                                                                  \
    asm("%0 = " #name " ll" : "=r"(address));                                                      \
    address;                                                                                       \
  })

#define sockets ADDRESS(void*, sockets)
#define moreSockets ADDRESS(void*, moreSockets)
#define processes ADDRESS(void*, processes)
#define recentOwners ADDRESS(void*, recentOwners)
#define control ADDRESS(struct Control*, control)
/* A constant of this load, so the verifier leaves out what no tunnel needs. */
#define hasTunnels ADDRESS(__u64, hasTunnels)

/* The offset of a field of `KERNEL_FIELDS`. */
#define OFFSET(field) ADDRESS(__u64, field)

/* Reads the kernel's pointers with a helper. The verifier takes milliseconds for a direct read of a
 * pointer that it trusts. Direct reads of numbers are cheap. */
static __always_inline void* pointerAt(const void* object, __u64 offset) {
  void* pointer; /* 0 after a failure */
  bpf_probe_read_kernel(&pointer, sizeof pointer, object + offset);
  return pointer;
}

static __always_inline __u32 numberAt(const void* object, __u64 offset) {
  __u32 number;
  bpf_probe_read_kernel(&number, sizeof number, object + offset);
  return number;
}

/* A number of a task that the verifier knows. */
#define TASK_NUMBER(task, field) (*(__u32*)((void*)(task) + OFFSET(field)))

static __always_inline int isBefore(__u64* deadline) {
  if (*deadline == 0) {
    return 0;
  }
  if (bpf_ktime_get_ns() < *deadline) {
    return 1;
  }
  *deadline = 0;
  return 0;
}

static __always_inline struct PrefixedCookie prefixed(__u64 cookie) {
  const struct PrefixedCookie key = {cookieBits, {cookie >> 32, cookie}};
  return key;
}

/* The entry of a socket that has moved something; null if it has none. */
static __always_inline struct SocketTraffic* knownEntry(__u64 cookie) {
  struct SocketTraffic* const entry = bpf_map_lookup_elem(sockets, &cookie);
  if (entry) {
    return entry;
  }
  const struct PrefixedCookie key = prefixed(cookie);
  return bpf_map_lookup_elem(moreSockets, &key);
}

/* The entry of a socket that moves something; null if there is no room for it. */
static __always_inline struct SocketTraffic* entryOf(__u64 cookie) {
  struct SocketTraffic* entry = bpf_map_lookup_elem(sockets, &cookie);
  if (entry) {
    return entry;
  }
  const struct SocketTraffic fresh = {};
  control->hasMoved = 1;
  bpf_map_update_elem(sockets, &cookie, &fresh, BPF_NOEXIST);
  entry = bpf_map_lookup_elem(sockets, &cookie);
  if (!entry) {
    /* It is full. */
    const struct PrefixedCookie key = prefixed(cookie);
    bpf_map_update_elem(moreSockets, &key, &fresh, BPF_NOEXIST);
    entry = bpf_map_lookup_elem(moreSockets, &key);
  }
  if (!entry) {
    return 0;
  }
  /* After the entry exists: an owner that is noted meanwhile finds it. */
  const struct SocketOwner* const owner = bpf_map_lookup_elem(recentOwners, &cookie);
  if (owner) {
    entry->owner = *owner;
  }
  return entry;
}

/* The size of the IP and transport headers. */
static __always_inline __u32 headerBytes(struct __sk_buff* skb) {
  /* The IP header up to the hop-by-hop options of version 6. Only packets of version 4 are shorter.
   */
  __u8 head[48] = {};
  if (bpf_skb_load_bytes(skb, 0, head, 42) != 0) {
    bpf_skb_load_bytes(skb, 0, head, 20);
  }
  __u32 size = (head[0] & 15) * 4;
  __u8 next = head[9];
  if (head[0] >> 4 == 6) {
    size = 40;
    next = head[6];
    if (next == hopByHop) {
      next = head[40];
      size += 8 + head[41] * 8;
    }
  }
  if (next != tcp) {
    return size + 8;
  }
  __u8 offset = 0;
  bpf_skb_load_bytes(skb, size + 12, &offset, 1);
  return size + (offset >> 4) * 4;
}

/* One packet here may be many on the wire, each with headers of its own. */
static __always_inline __u32 bytesOnTheWire(struct __sk_buff* skb) {
  const __u32 segment = skb->gso_size;
  if (segment == 0) {
    return skb->len;
  }
  const __u32 header = headerBytes(skb);
  if (skb->len <= header) {
    return skb->len;
  }
  const __u32 segments = (skb->len - header + segment - 1) / segment;
  return skb->len + (segments - 1) * header;
}

static __always_inline int isOnTunnel(__u32 device) {
  const __u32 word = device / 64;
  return hasTunnels && word < deviceWords && (control->tunnelDevices[word] >> (device % 64) & 1);
}

/* Adds a packet to its socket. Packets of no socket do not count. */
static __always_inline void count(struct __sk_buff* skb, int isSent) {
  if (skb->ifindex == loopback || !isBefore(&control->countUntil)) {
    return;
  }
  const __u64 cookie = bpf_get_socket_cookie(skb);
  if (cookie == 0) {
    return;
  }
  const __u32 bytes = bytesOnTheWire(skb);
  struct SocketTraffic* const entry = entryOf(cookie);
  if (!entry) {
    __sync_fetch_and_add(isSent ? &control->lostSent : &control->lostReceived, bytes);
    return;
  }
  __sync_fetch_and_add(isSent ? &entry->sent : &entry->received, bytes);
  if (isOnTunnel(skb->ifindex)) {
    __sync_fetch_and_add(isSent ? &entry->tunnelSent : &entry->tunnelReceived, bytes);
  }
}

SEC("cgroup_skb/ingress")
int countReceived(struct __sk_buff* skb) {
  count(skb, 0);
  return 1;
}

SEC("cgroup_skb/egress")
int countSent(struct __sk_buff* skb) {
  count(skb, 1);
  return 1;
}

/* Records the name of a process. An exiting process has released its executable, so its name from
 * before is kept. */
static __always_inline void noteProcess(struct task_struct* task, __u32 process) {
  struct ProcessRecord record = {};
  void* const memory = pointerAt(task, OFFSET(taskMemory));
  struct ProcessRecord* const known = bpf_map_lookup_elem(processes, &process);
  if (known && !memory) {
    return;
  }
  if (hasTunnels && known) {
    record.servesTunnel = known->servesTunnel;
  }
  record.user = numberAt(pointerAt(task, OFFSET(taskCredentials)), OFFSET(credentialsUser));
  void* const executable = pointerAt(memory, OFFSET(memoryExecutable));
  void* const entry = pointerAt(executable, OFFSET(fileEntry));
  if (bpf_probe_read_kernel_str(record.name, sizeof record.name,
                                pointerAt(entry, OFFSET(entryName))) <= 1) {
    bpf_probe_read_kernel_str(record.name, sizeof task->comm, (void*)task + OFFSET(taskName));
  }
  bpf_map_update_elem(processes, &process, &record, BPF_ANY);
}

/* A socket that is opened or closed meanwhile belongs to the process that does so. */
static __always_inline void noteOwner(struct bpf_sock* socket, int isHeld) {
  if (!isBefore(&control->noteUntil)) {
    return;
  }
  struct task_struct* const task = bpf_get_current_task_btf();
  if (TASK_NUMBER(task, taskFlags) & kernelThread) {
    return;
  }
  const __u64 cookie = bpf_get_socket_cookie(socket);
  const struct SocketOwner owner = {
      .process = bpf_get_current_pid_tgid() >> 32,
      .isHeld = isHeld,
      .mayTunnel = hasTunnels && bpf_get_netns_cookie(socket) == control->network,
  };
  bpf_map_update_elem(recentOwners, &cookie, &owner, BPF_ANY);
  struct SocketTraffic* const entry = knownEntry(cookie);
  if (entry) {
    entry->owner = owner;
  }
  noteProcess(task, owner.process);
}

SEC("cgroup/sock_create")
int noteMaker(struct bpf_sock* socket) {
  noteOwner(socket, 0);
  return 1;
}

SEC("cgroup/sock_release")
int noteCloser(struct bpf_sock* socket) {
  noteOwner(socket, 1);
  return 1;
}

/* Before the second: the names of processes that may exit during it. */
SEC("iter/task")
int nameProcesses(struct bpf_iter__task* context) {
  struct task_struct* const task = context->task;
  if (!task) {
    return 0;
  }
  const __u32 process = TASK_NUMBER(task, taskProcess);
  if (TASK_NUMBER(task, taskThread) == process && !(TASK_NUMBER(task, taskFlags) & kernelThread)) {
    noteProcess(task, process);
  }
  return 0;
}

static __always_inline int isTunnelServer(struct file* file) {
  void* const inode = pointerAt(file, OFFSET(fileInode));
  return numberAt(inode, OFFSET(inodeDevice)) == tunDevice &&
         ((__u16)numberAt(inode, OFFSET(inodeMode)) & fileType) == characterDevice;
}

/* Records the process as the holder of the socket, if the socket has moved something. Keeps the
 * first of several holders, but prefers any to process 1, which opens sockets for others. */
static __always_inline int noteHolder(struct socket* socket, __u32 process) {
  /* Direct reads, because this is done for every socket of the machine. */
  void* const protocol = *(void**)((void*)socket + OFFSET(socketProtocol));
  const __u64 cookie = *(__u64*)(protocol + OFFSET(protocolCookie));
  struct SocketTraffic* const entry = cookie ? knownEntry(cookie) : 0;
  if (!entry || (entry->owner.isHeld && entry->owner.process != 1)) {
    return 0;
  }
  entry->owner.process = process;
  entry->owner.isHeld = 1;
  /* The iterator runs in the helper, whose network namespace is that of the tunnels. */
  entry->owner.mayTunnel =
      hasTunnels && pointerAt(protocol, OFFSET(protocolNetwork)) ==
                        pointerAt(pointerAt(bpf_get_current_task_btf(), OFFSET(taskNamespaces)),
                                  OFFSET(namespacesNetwork));
  const int isNew = control->lastHolder != process;
  control->lastHolder = process;
  return isNew;
}

/* After the second: which processes hold the sockets that moved something, and which serve the
 * tunnels. */
SEC("iter/task_file")
int findHolders(struct bpf_iter__task_file* context) {
  struct task_struct* const task = context->task;
  struct file* const file = context->file;
  if (!task || !file) {
    return 0;
  }
  const __u32 process = TASK_NUMBER(task, taskProcess);
  struct socket* const socket = bpf_sock_from_file(file);
  if (socket) {
    if (noteHolder(socket, process)) {
      noteProcess(task, process);
    }
  } else if (hasTunnels && isTunnelServer(file)) {
    noteProcess(task, process);
    struct ProcessRecord* const record = bpf_map_lookup_elem(processes, &process);
    if (record) {
      record->servesTunnel = 1;
    }
  }
  return 0;
}

#define FIND_FIELD(name, type, field)                                                              \
  facts->name = __builtin_preserve_field_info(((type*)0)->field, byteOffset);

/* Only this program is matched with the kernel's types, which is slow. */
SEC("syscall")
int findFacts(struct KernelFacts* facts) {
  const char task[] = "bpf_iter_task";
  const char file[] = "bpf_iter_task_file";
  facts->taskIterator = bpf_btf_find_by_name_kind((char*)task, sizeof task, functionType, 0);
  facts->fileIterator = bpf_btf_find_by_name_kind((char*)file, sizeof file, functionType, 0);
  KERNEL_FIELDS(FIND_FIELD)
  return 0;
}
