#include "helpers/networkQuality/ServerSettings.h"

#include "base/TextPieces.h"

namespace tidewell {

std::string addressInSettings(std::string_view settings) {
  for (const std::string_view line : splitAt(settings, '\n')) {
    const std::string_view text = trim(line, " \t\r");
    if (!text.empty() && text.front() != '#') {
      return std::string(text);
    }
  }
  return {};
}

} // namespace tidewell
