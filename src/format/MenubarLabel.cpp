#include "format/MenubarLabel.h"

#include "base/NumberText.h"
#include "base/Translation.h"
#include "connectivity/MonitorState.h"
#include "format/SpeedFormatter.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"

namespace tidewell {
namespace {

const char* statusName(NetworkStatus status) {
  switch (status) {
  case NetworkStatus::excellent:
    return translated("Excellent");
  case NetworkStatus::good:
    return translated("Good");
  case NetworkStatus::degraded:
    return translated("Degraded");
  case NetworkStatus::down:
    break;
  }
  return translated("Down");
}

std::string latencyText(double latencyMs) {
  return latencyMs > 0.0 ? filled(translated("Latency %1 ms"), {fixedText(latencyMs, 1)})
                         : translated("Latency —");
}

} // namespace

std::string MenubarLabel::menubarString() const {
  if (!m_monitor.isConnected.get()) {
    return "↓-- ↑--";
  }
  std::string text =
      "↓" + SpeedFormatter::formatCompact(m_sampler.currentDownloadBytesPerSec.get());
  if (m_settings.showUploadInMenubar()) {
    text += " ↑" + SpeedFormatter::formatCompact(m_sampler.currentUploadBytesPerSec.get());
  }
  return text;
}

ItemTexts itemTexts(const SamplerState& sampler, const MonitorState& monitor,
                    const AppSettings& settings) {
  return {MenubarLabel(sampler, monitor, settings).menubarString(),
          statusName(sampler.currentStatus()),
          filled(translated("Download %1"),
                 {SpeedFormatter::format(sampler.currentDownloadBytesPerSec.get())}),
          filled(translated("Upload %1"),
                 {SpeedFormatter::format(sampler.currentUploadBytesPerSec.get())}),
          latencyText(sampler.latencyMs.get())};
}

} // namespace tidewell
