// Prints which processes moved how many bytes over the network in one second:
//
//   nettop -P -L 1 -J bytes_in,bytes_out -x [--route=bpf|--route=diag]
//
// May be given file capabilities (cap_bpf,cap_net_admin,cap_perfmon=p), for which everybody who
// starts it is a stranger.

#include "helpers/nettop/BpfRoute.h"
#include "helpers/nettop/DiagRoute.h"
#include "helpers/nettop/NettopText.h"
#include "helpers/nettop/Options.h"
#include "helpers/nettop/Privileges.h"
#include "helpers/nettop/Visibility.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

using namespace tidewell::nettop;

constexpr int wrongUsage = 2;

bool write(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(descriptor, text.data(), text.size());
    if (count < 0 && errno != EINTR) {
      return false;
    }
    text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
  }
  return true;
}

Measurement measure(Route route) {
  if (route != Route::diag) {
    Measurement measurement = measureWithBpf();
    if (route == Route::bpf || measurement.error.empty()) {
      return measurement;
    }
  }
  // Only an administrator has these.
  keepOnly({Capability::readAllFiles, Capability::trace});
  return measureWithDiag();
}

std::vector<ProcessTraffic> visibleRows(std::vector<ProcessTraffic> rows) {
  const auto caller = ::getuid();
  return caller != 0 && areOthersHidden() ? foldOthers(rows, caller, localUserNames())
                                          : std::move(rows);
}

} // namespace

int main(int argumentCount, char** arguments) {
  const std::vector<std::string_view> words(arguments + (argumentCount > 0 ? 1 : 0),
                                            arguments + argumentCount);
  const auto route = parseOptions(words);
  if (!route || !seclude()) {
    write(STDERR_FILENO, "usage: nettop -P -L 1 -J bytes_in,bytes_out -x\n");
    return wrongUsage;
  }
  Measurement measurement = measure(*route);
  if (!measurement.error.empty()) {
    write(STDERR_FILENO, "nettop: " + measurement.error + '\n');
    return EXIT_FAILURE;
  }
  keepOnly({});
  const std::string text = nettopText(visibleRows(std::move(measurement.rows)));
  return write(STDOUT_FILENO, text) ? EXIT_SUCCESS : EXIT_FAILURE;
}
