#include "PanelModel.h"

#include "Preferences.h"
#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "format/SpeedFormatter.h"
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

/// Formats a rate briefly, differently from the program.
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

std::string PanelModel::textOf(const SamplerState& sampler, const MonitorState& monitor) const {
  if (!monitor.isConnected.get()) {
    return "↓-- ↑--";
  }
  std::string text = "↓" + shortForm(sampler.currentDownloadBytesPerSec.get());
  if (truthIn(m_store.value("showUploadInMenubar"), true)) {
    text += " ↑" + shortForm(sampler.currentUploadBytesPerSec.get());
  }
  return text;
}

ExpectedItem PanelModel::item(const SamplerState& sampler, const MonitorState& monitor,
                              bool isTestingSpeed) const {
  constexpr std::array<const char*, 4> names = {"Excellent", "Good", "Degraded", "Down"};
  const auto status =
      statusOf(monitor.isConnected.get(), sampler.packetLossPercent.get(), sampler.latencyMs.get());
  std::string latency = "Latency —";
  if (const double value = sampler.latencyMs.get(); value > 0.0) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "Latency %.1f ms", value);
    latency = text.data();
  }
  return {textOf(sampler, monitor),
          std::string("Tidewell: ") + names.at(static_cast<std::size_t>(status)),
          "Download " + SpeedFormatter::format(sampler.currentDownloadBytesPerSec.get()) +
              "\nUpload " + SpeedFormatter::format(sampler.currentUploadBytesPerSec.get()) + "\n" +
              latency,
          isTestingSpeed};
}

void PanelModel::check(const SamplerState& sampler, const MonitorState& monitor) {
  const bool isConnected = monitor.isConnected.get();
  const auto status =
      statusOf(isConnected, sampler.packetLossPercent.get(), sampler.latencyMs.get());
  m_findings.require(sampler.currentStatus() == status, "the status",
                     rawValue(sampler.currentStatus()), "instead of", rawValue(status));
  ++m_statuses.at(static_cast<std::size_t>(status));

  const std::string text = textOf(sampler, monitor);
  const std::string shown = MenubarLabel(sampler, monitor, m_settings).menubarString();
  m_findings.require(shown == text, "the text in the panel", shown, "instead of", text);
}

} // namespace tidewell::test
