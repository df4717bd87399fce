#include "format/MenubarLabel.h"

#include "connectivity/MonitorState.h"
#include "format/SpeedFormatter.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"

namespace tidewell {

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

} // namespace tidewell
