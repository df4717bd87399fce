/* Which fields of the kernel's types the programs read. */
#pragma once

#include <linux/types.h>

/* The name of the offset, the type, the field. */
#define KERNEL_FIELDS(FIELD)                                                                       \
  FIELD(taskThread, struct task_struct, pid)                                                       \
  FIELD(taskProcess, struct task_struct, tgid)                                                     \
  FIELD(taskFlags, struct task_struct, flags)                                                      \
  FIELD(taskName, struct task_struct, comm)                                                        \
  FIELD(taskMemory, struct task_struct, mm)                                                        \
  FIELD(taskCredentials, struct task_struct, cred)                                                 \
  FIELD(taskNamespaces, struct task_struct, nsproxy)                                               \
  FIELD(credentialsUser, struct cred, uid)                                                         \
  FIELD(namespacesNetwork, struct nsproxy, net_ns)                                                 \
  FIELD(memoryExecutable, struct mm_struct, exe_file)                                              \
  FIELD(fileEntry, struct file, f_path.dentry)                                                     \
  FIELD(entryName, struct dentry, d_name.name)                                                     \
  FIELD(fileInode, struct file, f_inode)                                                           \
  FIELD(inodeDevice, struct inode, i_rdev)                                                         \
  FIELD(inodeMode, struct inode, i_mode)                                                           \
  FIELD(socketProtocol, struct socket, sk)                                                         \
  FIELD(protocolCookie, struct sock, __sk_common.skc_cookie)                                       \
  FIELD(protocolNetwork, struct sock, __sk_common.skc_net)

#define KERNEL_FIELD_MEMBER(name, type, field) __u64 name;

/* What a program finds out about the running kernel for the others. */
struct KernelFacts {
  __s64 taskIterator; /* the type number of a function of the kernel, or a negative error number */
  __s64 fileIterator;
  KERNEL_FIELDS(KERNEL_FIELD_MEMBER) /* offsets in bytes */
};
