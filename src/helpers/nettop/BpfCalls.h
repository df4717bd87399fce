#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <cstddef>
#include <cstdint>

#include <linux/bpf.h>

namespace tidewell::nettop {

/// The few forms of the bpf system call that measuring takes. Failures leave errno.

/// Lets a program run at a control group, the others that are there beside it, until the link is
/// closed; closed by the kernel where the process dies, however it does.
[[nodiscard]] FileDescriptor attachToGroup(int program, const FileDescriptor& group,
                                           bpf_attach_type where);

/// Makes ready to run an iterator program over all it iterates.
[[nodiscard]] FileDescriptor makeIterator(int program);

/// Runs the program; false when it failed before the end.
[[nodiscard]] bool runIterator(const FileDescriptor& iterator);

/// Copies the value of a key; false when there is none.
[[nodiscard]] bool lookUp(int table, const void* key, void* value);

/// One step through a table.
struct BatchStep {
  std::size_t count = 0; // entries that were copied
  bool isLast = false;
  bool hasFailed = false;
};

/// Copies the next entries of a table, as many as there is room for. `position` is handed on from
/// step to step; `isFirst` begins.
[[nodiscard]] BatchStep nextEntries(int table, bool isFirst, std::uint32_t& position, void* keys,
                                    void* values, std::size_t room);

} // namespace tidewell::nettop
