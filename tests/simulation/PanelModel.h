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

/// What the panel must show of the published values: the status and the text.
class PanelModel {
public:
  PanelModel(const AppSettings& settings, const PreferencesStore& store, Findings& findings)
      : m_settings(settings), m_store(store), m_findings(findings) {}

  /// Compares status and text with the values as they are.
  void check(const SamplerState& sampler, const MonitorState& monitor);

  /// What item, tool tip and menu must say of the values.
  [[nodiscard]] ExpectedItem item(const SamplerState& sampler, const MonitorState& monitor,
                                  bool isTestingSpeed) const;

  /// How often each status was seen, best first.
  [[nodiscard]] const std::array<int, 4>& statuses() const { return m_statuses; }

private:
  [[nodiscard]] std::string textOf(const SamplerState& sampler, const MonitorState& monitor) const;

  const AppSettings& m_settings;
  const PreferencesStore& m_store;
  Findings& m_findings;
  std::array<int, 4> m_statuses{};
};

} // namespace tidewell::test
