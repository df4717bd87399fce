#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tidewell::nettop {

/// How to measure.
enum class Route {
  best, // by programs in the kernel where that works, else by the sockets' own counters
  bpf,
  diag,
};

/// The route that the arguments (without the program's name) ask for; none when they are others
/// than `-P -L 1 -J bytes_in,bytes_out -x` and, if given, `--route=bpf` or `--route=diag` at the
/// end. Pure.
[[nodiscard]] std::optional<Route> parseOptions(std::span<const std::string_view> arguments);

} // namespace tidewell::nettop
