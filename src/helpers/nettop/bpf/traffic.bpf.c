/* Counts the bytes of every socket at the root of the control groups, and finds the process that
 * owns the socket. Loaded by the helper for the second that it measures. */
#include <linux/bpf.h>

#include <bpf/bpf_core_read.h>
#include <bpf/bpf_helpers.h>

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
};

struct Control control = {};

struct {
  __uint(type, BPF_MAP_TYPE_HASH);
  __uint(map_flags, BPF_F_NO_PREALLOC);
  __uint(max_entries, mostSockets);
  __type(key, __u64); /* the socket's cookie */
  __type(value, struct SocketTraffic);
} sockets SEC(".maps");

struct {
  __uint(type, BPF_MAP_TYPE_HASH);
  __uint(map_flags, BPF_F_NO_PREALLOC);
  __uint(max_entries, mostProcesses);
  __type(key, __u32);
  __type(value, struct ProcessRecord);
} processes SEC(".maps");

/* Who has opened and closed sockets lately. Those that move nothing only push each other out here.
 */
struct {
  __uint(type, BPF_MAP_TYPE_LRU_HASH);
  __uint(max_entries, mostRecentOwners);
  __type(key, __u64); /* the socket's cookie */
  __type(value, struct SocketOwner);
} recentOwners SEC(".maps");

static int isBefore(__u64* deadline) {
  if (*deadline == 0) {
    return 0;
  }
  if (bpf_ktime_get_ns() < *deadline) {
    return 1;
  }
  *deadline = 0;
  return 0;
}

/* The entry of a socket that moves something; null if there is no room for it. */
static struct SocketTraffic* entryOf(__u64 cookie) {
  struct SocketTraffic* entry = bpf_map_lookup_elem(&sockets, &cookie);
  if (entry) {
    return entry;
  }
  const struct SocketTraffic fresh = {};
  bpf_map_update_elem(&sockets, &cookie, &fresh, BPF_NOEXIST);
  entry = bpf_map_lookup_elem(&sockets, &cookie);
  /* After the entry exists: an owner that is noted meanwhile finds it. */
  const struct SocketOwner* const owner = bpf_map_lookup_elem(&recentOwners, &cookie);
  if (entry && owner) {
    entry->owner = *owner;
  }
  return entry;
}

/* The size of the IP and transport headers. */
static __u32 headerBytes(struct __sk_buff* skb) {
  __u8 first = 0, next = 0, tail = 0;
  bpf_skb_load_bytes(skb, 0, &first, 1);
  __u32 size = (first & 15) * 4;
  if (first >> 4 == 6) {
    size = 40;
    bpf_skb_load_bytes(skb, 6, &next, 1);
    if (next == hopByHop) {
      bpf_skb_load_bytes(skb, 40, &next, 1);
      bpf_skb_load_bytes(skb, 41, &tail, 1);
      size += 8 + tail * 8;
    }
  } else {
    bpf_skb_load_bytes(skb, 9, &next, 1);
  }
  if (next != tcp) {
    return size + 8;
  }
  bpf_skb_load_bytes(skb, size + 12, &tail, 1);
  return size + (tail >> 4) * 4;
}

/* One packet here may be many on the wire, each with headers of its own. */
static __u32 bytesOnTheWire(struct __sk_buff* skb) {
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

static int isOnTunnel(__u32 device) {
  const __u32 word = device / 64;
  return word < deviceWords && (control.tunnelDevices[word] >> (device % 64) & 1);
}

/* The socket of a packet that counts; 0 if it does not count. */
static __u64 countedSocket(struct __sk_buff* skb) {
  return skb->ifindex == loopback || !isBefore(&control.countUntil) ? 0
                                                                    : bpf_get_socket_cookie(skb);
}

SEC("cgroup_skb/ingress")
int countReceived(struct __sk_buff* skb) {
  const __u64 cookie = countedSocket(skb);
  if (cookie == 0) {
    return 1;
  }
  struct SocketTraffic* const entry = entryOf(cookie);
  const __u32 bytes = bytesOnTheWire(skb);
  __sync_fetch_and_add(entry ? &entry->received : &control.lostReceived, bytes);
  if (entry && isOnTunnel(skb->ifindex)) {
    __sync_fetch_and_add(&entry->tunnelReceived, bytes);
  }
  return 1;
}

SEC("cgroup_skb/egress")
int countSent(struct __sk_buff* skb) {
  const __u64 cookie = countedSocket(skb);
  if (cookie == 0) {
    return 1;
  }
  struct SocketTraffic* const entry = entryOf(cookie);
  const __u32 bytes = bytesOnTheWire(skb);
  __sync_fetch_and_add(entry ? &entry->sent : &control.lostSent, bytes);
  if (entry && isOnTunnel(skb->ifindex)) {
    __sync_fetch_and_add(&entry->tunnelSent, bytes);
  }
  return 1;
}

/* Records the name of a process. An exiting process has released its executable, so its name from
 * before is kept. */
static void noteProcess(struct task_struct* task, __u32 process) {
  struct ProcessRecord record = {};
  struct mm_struct* const memory = BPF_CORE_READ(task, mm);
  struct ProcessRecord* const known = bpf_map_lookup_elem(&processes, &process);
  if (known && !memory) {
    return;
  }
  record.user = BPF_CORE_READ(task, cred, uid.val);
  record.servesTunnel = known && known->servesTunnel;
  const unsigned char* const base =
      memory ? BPF_CORE_READ(memory, exe_file, f_path.dentry, d_name.name) : 0;
  if (!base || bpf_probe_read_kernel_str(record.name, sizeof record.name, base) <= 1) {
    bpf_probe_read_kernel_str(record.name, sizeof task->comm, &task->comm);
  }
  bpf_map_update_elem(&processes, &process, &record, BPF_ANY);
}

/* A socket that is opened or closed meanwhile belongs to the process that does so. */
static void noteOwner(struct bpf_sock* socket, int isHeld) {
  if (!isBefore(&control.noteUntil)) {
    return;
  }
  struct task_struct* const task = bpf_get_current_task_btf();
  if (BPF_CORE_READ(task, flags) & kernelThread) {
    return;
  }
  const __u64 cookie = bpf_get_socket_cookie(socket);
  const struct SocketOwner owner = {
      .process = bpf_get_current_pid_tgid() >> 32,
      .isHeld = isHeld,
      .mayTunnel = control.hasTunnels && bpf_get_netns_cookie(socket) == control.network,
  };
  bpf_map_update_elem(&recentOwners, &cookie, &owner, BPF_ANY);
  struct SocketTraffic* const entry = bpf_map_lookup_elem(&sockets, &cookie);
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
  const __u32 process = BPF_CORE_READ(task, tgid);
  if ((__u32)BPF_CORE_READ(task, pid) == process && !(BPF_CORE_READ(task, flags) & kernelThread)) {
    noteProcess(task, process);
  }
  return 0;
}

static int isTunnelServer(struct file* file) {
  struct inode* const inode = BPF_CORE_READ(file, f_inode);
  return BPF_CORE_READ(inode, i_rdev) == tunDevice &&
         (BPF_CORE_READ(inode, i_mode) & fileType) == characterDevice;
}

/* Records the process as the holder of the socket, if the socket has moved something. Keeps the
 * first of several holders, but prefers any to process 1, which opens sockets for others. */
static int noteHolder(struct socket* socket, __u32 process) {
  /* A direct read is faster, and this is done for every socket of the machine. Elsewhere it would
   * only prolong the kernel's verification. */
  const __u64 cookie = socket->sk->__sk_common.skc_cookie.counter;
  struct SocketTraffic* const entry = cookie ? bpf_map_lookup_elem(&sockets, &cookie) : 0;
  if (!entry || (entry->owner.isHeld && entry->owner.process != 1)) {
    return 0;
  }
  entry->owner.process = process;
  entry->owner.isHeld = 1;
  /* The iterator runs in the helper, whose network namespace is that of the tunnels. */
  entry->owner.mayTunnel =
      control.hasTunnels && BPF_CORE_READ(socket, sk, __sk_common.skc_net.net) ==
                                BPF_CORE_READ(bpf_get_current_task_btf(), nsproxy, net_ns);
  const int isNew = control.lastHolder != process;
  control.lastHolder = process;
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
  const __u32 process = BPF_CORE_READ(task, tgid);
  struct socket* const socket = bpf_sock_from_file(file);
  const int servesTunnel = !socket && control.hasTunnels && isTunnelServer(file);
  if (!servesTunnel && !(socket && noteHolder(socket, process))) {
    return 0;
  }
  noteProcess(task, process);
  struct ProcessRecord* const record = bpf_map_lookup_elem(&processes, &process);
  if (record && servesTunnel) {
    record->servesTunnel = 1;
  }
  return 0;
}

char licence[] SEC("license") = "Dual BSD/GPL";
