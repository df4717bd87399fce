#include "sampling/LatencyProbe.h"

#include "base/NumberText.h"
#include "base/Utf8.h"
#include "platform/ChildProcess.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tidewell {
namespace {

constexpr Seconds replyWait = 2.0;
constexpr std::size_t windowSize = 10;
constexpr double lossPerFailure = 10.0;
constexpr double recoveryPerSuccess = 5.0;
constexpr std::string_view timeMark = "time=";

/// Mean absolute difference of neighbours in two or more `samples`.
double jitterOf(const std::deque<double>& samples) {
  double sum = 0.0;
  for (std::size_t index = 1; index < samples.size(); ++index) {
    sum += std::abs(samples[index] - samples[index - 1]);
  }
  return sum / static_cast<double>(samples.size() - 1);
}

} // namespace

Async<LineQuality> LatencyProbe::probe(LineQuality carried) {
  LineQuality quality = carried;
  const std::optional<double> latency = co_await measureLatency();
  quality.latencyMs = latency.value_or(0.0);
  if (!latency) {
    quality.packetLossPercent = std::min(carried.packetLossPercent + lossPerFailure, 100.0);
    co_return quality;
  }
  m_latencySamples.push_back(*latency);
  if (m_latencySamples.size() > windowSize) {
    m_latencySamples.pop_front();
  }
  if (m_latencySamples.size() >= 2) {
    quality.jitterMs = jitterOf(m_latencySamples);
  }
  quality.packetLossPercent = std::max(carried.packetLossPercent - recoveryPerSuccess, 0.0);
  co_return quality;
}

std::optional<double> LatencyProbe::parseOutput(std::string_view output) {
  if (!isUtf8(output)) {
    return std::nullopt;
  }
  const auto mark = output.find(timeMark);
  if (mark == std::string_view::npos) {
    return std::nullopt;
  }
  const auto begin = mark + timeMark.size();
  const auto end = output.find(' ', begin);
  if (end == std::string_view::npos) {
    return std::nullopt;
  }
  return parseDouble(output.substr(begin, end - begin)).value_or(0.0);
}

Async<std::optional<double>> LatencyProbe::measureLatency() {
  const ToolCall ping{Tool::ping, target, replyWait};
  const std::optional<std::string> output = co_await m_children.run(ping);
  co_return output ? parseOutput(*output) : std::nullopt;
}

} // namespace tidewell
