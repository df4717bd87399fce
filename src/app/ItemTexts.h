#pragma once

#include "tile/TextTile.h"

#include <string>

namespace tidewell {

class AppSettings;
struct MonitorState;
struct SamplerState;

/// What the item says, in words.
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

/// The texts for what is published and preferred now. Main thread.
[[nodiscard]] ItemTexts itemTexts(const SamplerState& sampler, const MonitorState& monitor,
                                  const AppSettings& settings);

} // namespace tidewell
