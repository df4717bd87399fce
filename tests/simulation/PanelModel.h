#pragma once

#include "Findings.h"
#include "PanelHost.h"
#include "platform/PreferencesStore.h"

#include <array>
#include <string>

namespace tidewell {

class AppSettings;
struct MonitorState;
struct SamplerState;

} // namespace tidewell

namespace tidewell::test {

/// What the panel must show: the status and the text.
class PanelModel {
public:
  PanelModel(const AppSettings& settings, const PreferencesStore& store, Findings& findings)
      : m_settings(settings), m_store(store), m_findings(findings) {}

  /// Compares status and text with the current values.
  void check(const SamplerState& sampler, const MonitorState& monitor);

  /// The texts required of item, tool tip and menu.
  [[nodiscard]] ExpectedItem item(const SamplerState& sampler, const MonitorState& monitor,
                                  bool isTestingSpeed) const;

  /// The number of times each status was seen, best first.
  [[nodiscard]] const std::array<int, 4>& statuses() const { return m_statuses; }

private:
  [[nodiscard]] std::string textOf(const SamplerState& sampler, const MonitorState& monitor) const;

  const AppSettings& m_settings;
  const PreferencesStore& m_store;
  Findings& m_findings;
  std::array<int, 4> m_statuses{};
};

} // namespace tidewell::test
