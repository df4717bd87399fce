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

static struct SocketTraffic* entryOf(__u64 cookie) {
  struct SocketTraffic* entry = bpf_map_lookup_elem(&sockets, &cookie);
  if (!entry) {
    const struct SocketTraffic fresh = {};
    bpf_map_update_elem(&sockets, &cookie, &fresh, BPF_NOEXIST);
    entry = bpf_map_lookup_elem(&sockets, &cookie);
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

/* The entry in which to count the packet; null if it is not counted. */
static struct SocketTraffic* counted(struct __sk_buff* skb) {
  if (control.phase != counting || skb->ifindex == loopback) {
    return 0;
  }
  const __u64 cookie = bpf_get_socket_cookie(skb);
  if (cookie == 0) {
    return 0;
  }
  struct SocketTraffic* const entry = entryOf(cookie);
  if (!entry) {
    __sync_fetch_and_add(&control.lost, 1);
  }
  return entry;
}

SEC("cgroup_skb/ingress")
int countReceived(struct __sk_buff* skb) {
  struct SocketTraffic* const entry = counted(skb);
  if (entry) {
    const __u32 bytes = bytesOnTheWire(skb);
    __sync_fetch_and_add(&entry->received, bytes);
    if (isOnTunnel(skb->ifindex)) {
      __sync_fetch_and_add(&entry->tunnelReceived, bytes);
    }
  }
  return 1;
}

SEC("cgroup_skb/egress")
int countSent(struct __sk_buff* skb) {
  struct SocketTraffic* const entry = counted(skb);
  if (entry) {
    const __u32 bytes = bytesOnTheWire(skb);
    __sync_fetch_and_add(&entry->sent, bytes);
    if (isOnTunnel(skb->ifindex)) {
      __sync_fetch_and_add(&entry->tunnelSent, bytes);
    }
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
  struct task_struct* const task = bpf_get_current_task_btf();
  if (control.phase == idle || BPF_CORE_READ(task, flags) & kernelThread) {
    return;
  }
  const __u32 process = bpf_get_current_pid_tgid() >> 32;
  struct SocketTraffic* const entry = entryOf(bpf_get_socket_cookie(socket));
  if (entry) {
    entry->owner = process;
    entry->isHeld = isHeld;
    entry->mayTunnel = control.hasTunnels && bpf_get_netns_cookie(socket) == control.network;
    noteProcess(task, process);
  }
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
  if (!entry || (entry->isHeld && entry->owner != 1)) {
    return 0;
  }
  entry->owner = process;
  entry->isHeld = 1;
  /* The iterator runs in the helper, whose network namespace is that of the tunnels. */
  entry->mayTunnel =
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
