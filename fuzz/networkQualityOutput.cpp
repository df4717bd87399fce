// Any bytes as the network-quality tool's output. The results are finite and not negative, and an
// unrelated line appended changes nothing. The reason of a failure is short and can be shown.

#include "speedtest/NetworkQualityOutput.h"
#include "base/DisplayText.h"
#include "support/Require.h"

#include <cmath>
#include <string>
#include <string_view>

using tidewell::fuzz::require;

namespace {

bool isSpeed(double megabits) { return megabits >= 0.0 && !std::isnan(megabits); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto result = tidewell::parseNetworkQualityOutput(text, 7.0);
  require(result.timestamp == 7.0);
  require(isSpeed(result.downloadMbps) && isSpeed(result.uploadMbps));
  require(result.responsiveness >= 0);

  const auto longer = tidewell::parseNetworkQualityOutput(
      text + "\nDownlink capacity: 1.5 Gbps\nUplink capacity: 2 Kbps\nResponsiveness: 9", 7.0);
  require(longer == tidewell::SpeedTestResult{7.0, 1500.0, 0.002, 9});

  const std::string reason = tidewell::networkQualityFailure(text);
  require(reason.size() <= 3 * tidewell::longestFailure); // a replaced byte becomes three
  require(tidewell::displayText(reason) == reason);
  return 0;
}
