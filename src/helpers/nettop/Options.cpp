#include "helpers/nettop/Options.h"

#include <algorithm>
#include <array>

namespace tidewell::nettop {

namespace {

constexpr std::array<std::string_view, 6> expected{"-P", "-L", "1", "-J", "bytes_in,bytes_out",
                                                   "-x"};

} // namespace

std::optional<Route> parseOptions(std::span<const std::string_view> arguments) {
  if (arguments.size() < expected.size() ||
      !std::ranges::equal(arguments.first(expected.size()), expected)) {
    return std::nullopt;
  }
  const auto rest = arguments.subspan(expected.size());
  if (rest.empty()) {
    return Route::best;
  }
  if (rest.size() == 1 && rest[0] == "--route=bpf") {
    return Route::bpf;
  }
  if (rest.size() == 1 && rest[0] == "--route=diag") {
    return Route::diag;
  }
  return std::nullopt;
}

} // namespace tidewell::nettop
