// Any bytes as ping's output, runs separated by zeros. The results are always numbers.

#include "base/TextPieces.h"
#include "platform/ChildProcess.h"
#include "sampling/LatencyProbe.h"
#include "support/Awaiting.h"
#include "support/Require.h"

#include <cmath>
#include <utility>

namespace {

using tidewell::fuzz::require;

/// Runs nothing; returns the next of the given outputs.
class ScriptedChildren final : public tidewell::ChildProcess {
public:
  tidewell::Async<std::optional<std::string>> run(tidewell::ToolCall call,
                                                  std::function<void(Id)> /*launched*/) override {
    require(call.tool == tidewell::Tool::ping);
    co_return next;
  }
  void terminate(Id /*child*/) override {}

  std::string next;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ScriptedChildren children;
  tidewell::LatencyProbe probe(children);
  tidewell::LineQuality quality;
  for (const auto output : tidewell::splitAt(tidewell::fuzz::textOf(data, size), '\0')) {
    children.next = output;
    const auto parsed = tidewell::LatencyProbe::parseOutput(output);
    const auto before =
        std::exchange(quality, tidewell::test::awaited(probe.probe(quality), [] {}));
    require(quality.latencyMs == parsed.value_or(0.0) && std::isfinite(quality.latencyMs));
    require(quality.packetLossPercent >= 0.0 && quality.packetLossPercent <= 100.0);
    require(quality.jitterMs >= 0.0);
    require(parsed || quality.jitterMs == before.jitterMs);
    // The first line counts; later ones change nothing.
    require(!parsed || tidewell::LatencyProbe::parseOutput(children.next + " time=7 ms") == parsed);
  }
  return 0;
}
