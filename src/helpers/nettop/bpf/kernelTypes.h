/* The fields of the kernel's types that the programs read. Their offsets are looked up in the
 * running kernel, so no kernel's own header is needed. */
#pragma once

#include <linux/types.h>

#pragma clang attribute push(__attribute__((preserve_access_index)), apply_to = record)

struct qstr {
  const unsigned char* name;
};
struct dentry {
  struct qstr d_name;
};
struct path {
  struct dentry* dentry;
};
struct inode {
  unsigned short i_mode;
  __u32 i_rdev;
};
struct file {
  struct path f_path;
  struct inode* f_inode;
};
struct mm_struct {
  struct file* exe_file;
};
struct kuid {
  __u32 val;
};
struct cred {
  struct kuid uid;
};
struct net;
struct nsproxy {
  struct net* net_ns;
};
struct task_struct {
  int pid;
  int tgid;
  unsigned int flags;
  char comm[16];
  struct mm_struct* mm;
  const struct cred* cred;
  struct nsproxy* nsproxy;
};
struct counter64 {
  __s64 counter;
};
struct net_pointer {
  struct net* net;
};
struct sock_common {
  struct net_pointer skc_net;
  struct counter64 skc_cookie;
};
struct sock {
  struct sock_common __sk_common;
};
struct socket {
  struct sock* sk;
};

#pragma clang attribute pop

/* What iterators receive. It is the same in every kernel. */
struct bpf_iter_meta;
struct bpf_iter__task {
  struct bpf_iter_meta* meta;
  struct task_struct* task;
};
struct bpf_iter__task_file {
  struct bpf_iter_meta* meta;
  struct task_struct* task;
  __u32 fd;
  struct file* file;
};
