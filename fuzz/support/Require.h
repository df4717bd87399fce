#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

namespace tidewell::fuzz {

/// Ends the run, which the fuzzer takes for a finding, unless the condition holds.
inline void require(bool condition, int line = __builtin_LINE(),
                    const char* file = __builtin_FILE()) {
  if (!condition) {
    std::fprintf(stderr, "%s:%d: a rule is broken\n", file, line);
    std::abort();
  }
}

/// The input as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The input in memory of exactly its size, aligned as what the kernel's messages are read into.
inline std::vector<std::byte> messagesOf(const std::uint8_t* data, std::size_t size) {
  const auto bytes = std::as_bytes(std::span(data, size));
  return {bytes.begin(), bytes.end()};
}

} // namespace tidewell::fuzz
