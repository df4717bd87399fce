#include "helpers/nettop/BpfCalls.h"

#include <array>
#include <bit>
#include <cerrno>

#include <sys/syscall.h>
#include <unistd.h>

namespace tidewell::nettop {
namespace {

long call(bpf_cmd command, bpf_attr& attributes) {
  return ::syscall(SYS_bpf, command, &attributes, sizeof attributes);
}

std::uint64_t address(const void* memory) { return std::bit_cast<std::uintptr_t>(memory); }

} // namespace

FileDescriptor attachToGroup(int program, const FileDescriptor& group, bpf_attach_type where) {
  bpf_attr attributes{};
  attributes.link_create.prog_fd = static_cast<std::uint32_t>(program);
  attributes.link_create.target_fd = static_cast<std::uint32_t>(group.get());
  attributes.link_create.attach_type = where;
  return FileDescriptor(static_cast<int>(call(BPF_LINK_CREATE, attributes)));
}

FileDescriptor makeIterator(int program) {
  bpf_attr attributes{};
  attributes.link_create.prog_fd = static_cast<std::uint32_t>(program);
  attributes.link_create.attach_type = BPF_TRACE_ITER;
  const FileDescriptor link(static_cast<int>(call(BPF_LINK_CREATE, attributes)));
  if (!link.isOpen()) {
    return {};
  }
  bpf_attr iterator{};
  iterator.iter_create.link_fd = static_cast<std::uint32_t>(link.get());
  return FileDescriptor(static_cast<int>(call(BPF_ITER_CREATE, iterator)));
}

bool runIterator(const FileDescriptor& iterator) {
  std::array<char, 64> nothing{};
  while (true) {
    // The iterator returns EAGAIN after a million objects; keep reading.
    const ssize_t count = ::read(iterator.get(), nothing.data(), nothing.size());
    if (count == 0) {
      return true;
    }
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
      return false;
    }
  }
}

bool lookUp(int table, const void* key, void* value) {
  bpf_attr attributes{};
  attributes.map_fd = static_cast<std::uint32_t>(table);
  attributes.key = address(key);
  attributes.value = address(value);
  return call(BPF_MAP_LOOKUP_ELEM, attributes) == 0;
}

BatchStep nextEntries(int table, bool isFirst, void* position, void* keys, void* values,
                      std::size_t room) {
  bpf_attr attributes{};
  attributes.batch.map_fd = static_cast<std::uint32_t>(table);
  attributes.batch.in_batch = isFirst ? 0 : address(position);
  attributes.batch.out_batch = address(position);
  attributes.batch.keys = address(keys);
  attributes.batch.values = address(values);
  attributes.batch.count = static_cast<std::uint32_t>(room);
  const bool isDone = call(BPF_MAP_LOOKUP_BATCH, attributes) == 0;
  const bool isLast = !isDone && errno == ENOENT;
  if (!isDone && !isLast) {
    return {0, true, true};
  }
  return {attributes.batch.count, isLast, false};
}

} // namespace tidewell::nettop
