#pragma once

#include <functional>
#include <optional>

#include <QPoint>

namespace tidewell {

/// What the item's user may ask for. Main thread.
struct ItemCommands {
  /// Opens the panel, or closes it; the place in the display server's pixels.
  std::function<void(std::optional<QPoint> point)> togglePanel;
  std::function<void()> openDetail;
  std::function<void()> openSettings;
  std::function<void()> runSpeedTest;
  std::function<void()> copyAddress;
  std::function<void()> quit;
};

} // namespace tidewell
