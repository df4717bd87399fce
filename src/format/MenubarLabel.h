#pragma once

#include <string>

namespace tidewell {

class AppSettings;
struct MonitorState;
struct SamplerState;

/// The text in the panel for the current values and preferences.
class MenubarLabel {
public:
  MenubarLabel(const SamplerState& sampler, const MonitorState& monitor,
               const AppSettings& settings)
      : m_sampler(sampler), m_monitor(monitor), m_settings(settings) {}

  /// "↓12K ↑3K", or "↓12K" if the user hides the upload rate; "↓-- ↑--" while offline.
  [[nodiscard]] std::string menubarString() const;

private:
  const SamplerState& m_sampler;
  const MonitorState& m_monitor;
  const AppSettings& m_settings;
};

/// The texts of the item and its menu.
struct ItemTexts {
  /// The text in the panel.
  std::string label;
  /// "Excellent", "Good", "Degraded" or "Down".
  std::string status;
  /// "Download 1.2 MB/s".
  std::string download;
  std::string upload;
  /// "Latency 12.3 ms", or "Latency —" without a measurement.
  std::string latency;

  friend bool operator==(const ItemTexts&, const ItemTexts&) = default;
};

/// The texts for the current values and preferences.
[[nodiscard]] ItemTexts itemTexts(const SamplerState& sampler, const MonitorState& monitor,
                                  const AppSettings& settings);

} // namespace tidewell
