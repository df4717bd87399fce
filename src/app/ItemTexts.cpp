#include "app/ItemTexts.h"

#include "base/NumberText.h"
#include "format/MenubarLabel.h"
#include "format/SpeedFormatter.h"
#include "sampling/SamplerState.h"

namespace tidewell {

namespace {

const char* statusName(NetworkStatus status) {
  switch (status) {
  case NetworkStatus::excellent:
    return "Excellent";
  case NetworkStatus::good:
    return "Good";
  case NetworkStatus::degraded:
    return "Degraded";
  case NetworkStatus::down:
    break;
  }
  return "Down";
}

std::string latencyText(double latencyMs) {
  return latencyMs > 0.0 ? "Latency " + fixedText(latencyMs, 1) + " ms" : "Latency —";
}

} // namespace

ItemTexts itemTexts(const SamplerState& sampler, const MonitorState& monitor,
                    const AppSettings& settings) {
  return {MenubarLabel(sampler, monitor, settings).menubarString(),
          statusName(sampler.currentStatus()),
          "Download " + SpeedFormatter::format(sampler.currentDownloadBytesPerSec.get()),
          "Upload " + SpeedFormatter::format(sampler.currentUploadBytesPerSec.get()),
          latencyText(sampler.latencyMs.get())};
}

} // namespace tidewell
