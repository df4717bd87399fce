#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <cstddef>
#include <cstdint>

#include <linux/bpf.h>

namespace tidewell::nettop {

/// The forms of the bpf(2) system call that are needed. They set errno on failure.

/// Runs a program at a control group, beside those already there, until the link is closed. The
/// kernel closes it when the process dies.
[[nodiscard]] FileDescriptor attachToGroup(int program, const FileDescriptor& group,
                                           bpf_attach_type where);

/// Prepares an iterator program.
[[nodiscard]] FileDescriptor makeIterator(int program);

/// Runs the program over all objects. Returns false if it failed before the end.
[[nodiscard]] bool runIterator(const FileDescriptor& iterator);

/// Copies the value of a key. Returns false if there is none.
[[nodiscard]] bool lookUp(int table, const void* key, void* value);

/// The result of one step through a table.
struct BatchStep {
  std::size_t count = 0; // entries that were copied
  bool isLast = false;
  bool hasFailed = false;
};

/// Copies the next entries of a table, at most `room`. `isFirst` begins a walk, and `position`, as
/// large as a key and 4 bytes at least, is kept between its steps.
[[nodiscard]] BatchStep nextEntries(int table, bool isFirst, void* position, void* keys,
                                    void* values, std::size_t room);

} // namespace tidewell::nettop
