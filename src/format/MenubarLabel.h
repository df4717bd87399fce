#pragma once

#include <string>

namespace tidewell {

class AppSettings;
struct MonitorState;
struct SamplerState;

/// The text in the panel, from what is published and preferred now. Main thread.
class MenubarLabel {
public:
  MenubarLabel(const SamplerState& sampler, const MonitorState& monitor,
               const AppSettings& settings)
      : m_sampler(sampler), m_monitor(monitor), m_settings(settings) {}

  /// "↓12K ↑3K", or "↓12K" when the user hides the upload rate; "↓-- ↑--" while offline.
  [[nodiscard]] std::string menubarString() const;

private:
  const SamplerState& m_sampler;
  const MonitorState& m_monitor;
  const AppSettings& m_settings;
};

} // namespace tidewell
