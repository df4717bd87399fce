#include "PanelModel.h"

#include "Preferences.h"
#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "sampling/SamplerState.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace tidewell::test {

namespace {

NetworkStatus statusOf(bool isConnected, double loss, double latency) {
  if (!isConnected) {
    return NetworkStatus::down;
  }
  if (loss > 5.0 || latency > 100.0) {
    return NetworkStatus::degraded;
  }
  return latency > 50.0 ? NetworkStatus::good : NetworkStatus::excellent;
}

/// A rate's short form, by another way than the program's.
std::string shortForm(std::int64_t rate) {
  std::array<char, 40> text{};
  const auto bytes = static_cast<double>(rate);
  if (rate < 1000) {
    return "0K";
  }
  if (rate < 1'000'000) {
    std::snprintf(text.data(), text.size(), "%.0fK", bytes / 1e3);
  } else {
    std::snprintf(text.data(), text.size(), rate < 100'000'000 ? "%.1fM" : "%.0fM", bytes / 1e6);
  }
  return text.data();
}

} // namespace

void PanelModel::check(const SamplerState& sampler, const MonitorState& monitor) {
  const bool isConnected = monitor.isConnected.get();
  const auto status =
      statusOf(isConnected, sampler.packetLossPercent.get(), sampler.latencyMs.get());
  m_findings.require(sampler.currentStatus() == status, "the status",
                     rawValue(sampler.currentStatus()), "instead of", rawValue(status));
  ++m_statuses.at(static_cast<std::size_t>(status));

  std::string text = "↓-- ↑--";
  if (isConnected) {
    text = "↓" + shortForm(sampler.currentDownloadBytesPerSec.get());
    if (truthIn(m_store.value("showUploadInMenubar"), true)) {
      text += " ↑" + shortForm(sampler.currentUploadBytesPerSec.get());
    }
  }
  const std::string shown = MenubarLabel(sampler, monitor, m_settings).menubarString();
  m_findings.require(shown == text, "the text in the panel", shown, "instead of", text);
}

} // namespace tidewell::test
