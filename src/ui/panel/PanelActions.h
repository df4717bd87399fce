#pragma once

#include <functional>
#include <string>

namespace tidewell {

/// What the panel's buttons ask for. Called on the main thread.
struct PanelActions {
  std::function<void()> openDetail;
  std::function<void()> openSettings;
  std::function<void()> runSpeedTest;
  /// Ends the application.
  std::function<void()> quit;
  /// Clears the clipboard and puts the plain text on it.
  std::function<void(const std::string& text)> copyText;
};

} // namespace tidewell
