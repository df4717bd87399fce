// Prints which processes moved how many bytes over the network in one second:
//
//   nettop [--route=bpf|--route=diag]
//
// May have file capabilities (cap_bpf,cap_net_admin,cap_perfmon=p), so its callers are not trusted.

#include "helpers/nettop/Measurement.h"
#include "helpers/nettop/NettopText.h"
#include "helpers/nettop/Privileges.h"
#include "helpers/nettop/Rows.h"

#include <cerrno>
#include <cstdlib>
#include <optional>
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

enum class Method {
  best, // with programs in the kernel if that works, else with the sockets' own counters
  bpf,
  diag,
};

/// Returns nullopt for wrong usage.
std::optional<Method> methodOf(const std::vector<std::string_view>& arguments) {
  if (arguments.empty()) {
    return Method::best;
  }
  const bool isBpf = arguments[0] == "--route=bpf";
  const bool isKnown = arguments.size() == 1 && (isBpf || arguments[0] == "--route=diag");
  return isKnown ? std::optional(isBpf ? Method::bpf : Method::diag) : std::nullopt;
}

Measurement measure(Method method) {
  if (method != Method::diag) {
#ifdef TIDEWELL_BPF
    Measurement measurement = measureWithBpf();
#else
    Measurement measurement{{}, "built without this route"};
#endif
    if (method == Method::bpf || measurement.error.empty()) {
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
  const auto method = methodOf(words);
  if (!method || !seclude()) {
    keepOnly({});
    write(STDERR_FILENO, "usage: nettop [--route=bpf|--route=diag]\n");
    return wrongUsage;
  }
  Measurement measurement = measure(*method);
  keepOnly({});
  if (!measurement.error.empty()) {
    write(STDERR_FILENO, "nettop: " + measurement.error + '\n');
    return EXIT_FAILURE;
  }
  const std::string text = nettopText(visibleRows(std::move(measurement.rows)));
  return write(STDOUT_FILENO, text) ? EXIT_SUCCESS : EXIT_FAILURE;
}
