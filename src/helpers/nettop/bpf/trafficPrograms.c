#include "trafficPrograms.h"

#include <errno.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "kernelFields.h"
#include "programObject.h"

enum { mostInstructions = 512, mostSymbols = 32 };

#define FIELD_SYMBOL(name, type, field) {#name, 0, (int)found.name},

/* What the symbols that the programs name stand for. */
struct Symbol {
  const char* name;
  __u8 kind : 4; /* BPF_PSEUDO_..., 0 for a number */
  int value;
};

struct Loading {
  int types;                          /* the file descriptor of the programs' types */
  struct Symbol symbols[mostSymbols]; /* the last has no name */
};

/* Zeros in every member. */
static const union bpf_attr none;

static int call(enum bpf_cmd command, union bpf_attr* attributes) {
  const long result = syscall(SYS_bpf, command, attributes, sizeof *attributes);
  return result < 0 ? -errno : (int)result;
}

static __u64 address(const void* memory) { return (__u64)(unsigned long)memory; }

static int makeTable(enum bpf_map_type type, __u32 flags, __u32 keySize, __u32 valueSize,
                     __u32 entries) {
  union bpf_attr attributes = none;
  attributes.map_type = type;
  attributes.map_flags = flags;
  attributes.key_size = keySize;
  attributes.value_size = valueSize;
  attributes.max_entries = entries;
  return call(BPF_MAP_CREATE, &attributes);
}

static int loadTypes(void) {
  const struct Piece types = programTypes();
  union bpf_attr attributes = none;
  attributes.btf = address(types.bytes);
  attributes.btf_size = types.size;
  return call(BPF_BTF_LOAD, &attributes);
}

/* Copies the program with the values of its symbols. */
static void resolve(const struct ProgramSection* section, const struct Symbol* symbols,
                    struct bpf_insn* copy) {
  const struct bpf_insn* const instructions = section->instructions.bytes;
  for (__u32 index = 0; index < section->instructions.size / sizeof *copy; ++index) {
    copy[index] = instructions[index];
  }
  const Elf64_Rel* const references = section->references.bytes;
  for (__u32 index = 0; index * sizeof *references < section->references.size; ++index) {
    const char* const name = symbolName(section, &references[index]);
    const struct Symbol* symbol = symbols;
    while (symbol->name && strcmp(symbol->name, name) != 0) {
      ++symbol;
    }
    struct bpf_insn* const place = &copy[references[index].r_offset / sizeof *copy];
    place->src_reg = symbol->kind;
    place->imm = symbol->value;
  }
}

static int load(const char* name, const char* sectionName, enum bpf_prog_type type,
                enum bpf_attach_type attachType, int target, const struct Loading* loading) {
  struct bpf_insn instructions[mostInstructions];
  const struct ProgramSection section = programSection(sectionName);
  if (section.instructions.size > sizeof instructions) {
    return -E2BIG;
  }
  resolve(&section, loading->symbols, instructions);
  union bpf_attr attributes = none;
  for (__u32 index = 0; index + 1 < sizeof attributes.prog_name && name[index]; ++index) {
    attributes.prog_name[index] = name[index];
  }
  attributes.prog_type = type;
  attributes.expected_attach_type = attachType;
  attributes.insns = address(instructions);
  attributes.insn_cnt = section.instructions.size / sizeof *instructions;
  attributes.license = address("Dual BSD/GPL");
  attributes.attach_btf_id = (__u32)target;
  attributes.prog_flags = type == BPF_PROG_TYPE_SYSCALL ? BPF_F_SLEEPABLE : 0;
  if (section.fields.size) {
    attributes.prog_btf_fd = (__u32)loading->types;
    attributes.func_info = address(section.functions.bytes);
    attributes.func_info_rec_size = sizeof(struct bpf_func_info);
    attributes.func_info_cnt = section.functions.size / sizeof(struct bpf_func_info);
    attributes.core_relos = address(section.fields.bytes);
    attributes.core_relo_rec_size = sizeof(struct bpf_core_relo);
    attributes.core_relo_cnt = section.fields.size / sizeof(struct bpf_core_relo);
  }
  return call(BPF_PROG_LOAD, &attributes);
}

static void addSymbols(struct Loading* loading, const struct Symbol* symbols, __u32 count) {
  struct Symbol* end = loading->symbols;
  while (end->name) {
    ++end;
  }
  for (__u32 index = 0; index < count; ++index) {
    end[index] = symbols[index];
  }
}

/* Asks the kernel what the programs need to know about it. */
static int findFacts(struct KernelFacts* found, const struct Loading* loading) {
  const int program = load("findFacts", "syscall", BPF_PROG_TYPE_SYSCALL, 0, 0, loading);
  if (program < 0) {
    return program;
  }
  union bpf_attr attributes = none;
  attributes.test.prog_fd = (__u32)program;
  attributes.test.ctx_in = address(found);
  attributes.test.ctx_size_in = sizeof *found;
  const int error = call(BPF_PROG_TEST_RUN, &attributes);
  close(program);
  if (error < 0) {
    return error;
  }
  return found->taskIterator < 0 || found->fileIterator < 0 ? -ENOENT : 0;
}

/* Returns the first negative number, or 0. */
static int firstError(const int* results, int count) {
  for (int index = 0; index < count; ++index) {
    if (results[index] < 0) {
      return results[index];
    }
  }
  return 0;
}

/* The memory of a hash table is that for its size, even while it is empty, and the kernel clears
 * it. So the table of sockets is small, and beside it there is one that takes no memory before it
 * is used. */
static void makeSocketTables(struct TrafficPrograms* programs, __u32 expected) {
  programs->sockets = makeTable(BPF_MAP_TYPE_HASH, BPF_F_NO_PREALLOC, sizeof(__u64),
                                sizeof(struct SocketTraffic), expected);
  programs->moreSockets =
      makeTable(BPF_MAP_TYPE_LPM_TRIE, BPF_F_NO_PREALLOC, sizeof(struct PrefixedCookie),
                sizeof(struct SocketTraffic), mostSockets - expected);
}

static int makeTables(struct TrafficPrograms* programs, struct Loading* loading, int hasTunnels) {
  const int control =
      makeTable(BPF_MAP_TYPE_ARRAY, BPF_F_MMAPABLE, sizeof(__u32), sizeof(struct Control), 1);
  programs->processes = makeTable(BPF_MAP_TYPE_HASH, BPF_F_NO_PREALLOC, sizeof(__u32),
                                  sizeof(struct ProcessRecord), mostProcesses);
  const int owners = makeTable(BPF_MAP_TYPE_LRU_HASH, 0, sizeof(__u64), sizeof(struct SocketOwner),
                               mostRecentOwners);
  const struct Symbol symbols[] = {
      {"control", BPF_PSEUDO_MAP_VALUE, control},
      {"sockets", BPF_PSEUDO_MAP_FD, programs->sockets},
      {"moreSockets", BPF_PSEUDO_MAP_FD, programs->moreSockets},
      {"processes", BPF_PSEUDO_MAP_FD, programs->processes},
      {"recentOwners", BPF_PSEUDO_MAP_FD, owners},
      {"hasTunnels", 0, hasTunnels},
  };
  addSymbols(loading, symbols, sizeof symbols / sizeof *symbols);
  const int tables[] = {control, programs->sockets, programs->moreSockets, programs->processes,
                        owners};
  const int error = firstError(tables, 5);
  if (error < 0) {
    return error;
  }
  void* const memory =
      mmap(0, sizeof(struct Control), PROT_READ | PROT_WRITE, MAP_SHARED, control, 0);
  programs->control = memory;
  return memory == MAP_FAILED ? -errno : 0;
}

static int loadAll(struct TrafficPrograms* programs, const struct KernelFacts* facts,
                   const struct Loading* loading) {
  programs->countReceived = load("countReceived", "cgroup_skb/ingress", BPF_PROG_TYPE_CGROUP_SKB,
                                 BPF_CGROUP_INET_INGRESS, 0, loading);
  programs->countSent = load("countSent", "cgroup_skb/egress", BPF_PROG_TYPE_CGROUP_SKB,
                             BPF_CGROUP_INET_EGRESS, 0, loading);
  programs->noteMaker = load("noteMaker", "cgroup/sock_create", BPF_PROG_TYPE_CGROUP_SOCK,
                             BPF_CGROUP_INET_SOCK_CREATE, 0, loading);
  programs->noteCloser = load("noteCloser", "cgroup/sock_release", BPF_PROG_TYPE_CGROUP_SOCK,
                              BPF_CGROUP_INET_SOCK_RELEASE, 0, loading);
  programs->nameProcesses = load("nameProcesses", "iter/task", BPF_PROG_TYPE_TRACING,
                                 BPF_TRACE_ITER, (int)facts->taskIterator, loading);
  programs->findHolders = load("findHolders", "iter/task_file", BPF_PROG_TYPE_TRACING,
                               BPF_TRACE_ITER, (int)facts->fileIterator, loading);
  const int loaded[] = {programs->countReceived, programs->countSent,     programs->noteMaker,
                        programs->noteCloser,    programs->nameProcesses, programs->findHolders};
  return firstError(loaded, 6);
}

int loadTrafficPrograms(struct TrafficPrograms* programs, unsigned expectedSockets,
                        int hasTunnels) {
  struct Loading loading = {0};
  struct KernelFacts found = {0};
  makeSocketTables(programs, expectedSockets);
  int error = makeTables(programs, &loading, hasTunnels);
  if (error < 0) {
    return error;
  }
  loading.types = loadTypes();
  if (loading.types < 0) {
    return loading.types;
  }
  error = findFacts(&found, &loading);
  close(loading.types);
  if (error < 0) {
    return error;
  }
  const struct Symbol fields[] = {KERNEL_FIELDS(FIELD_SYMBOL)};
  addSymbols(&loading, fields, sizeof fields / sizeof *fields);
  return loadAll(programs, &found, &loading);
}
