#include "helpers/networkQuality/ResultText.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

constexpr double high = 1000.0; // round trips per minute
constexpr double medium = 200.0;

const char* nameOf(double perMinute) {
  if (perMinute >= high) {
    return "High";
  }
  return perMinute >= medium ? "Medium" : "Low";
}

const char* nameOf(Confidence confidence) {
  switch (confidence) {
  case Confidence::low:
    return "low";
  case Confidence::medium:
    return "medium";
  case Confidence::high:
    break;
  }
  return "high";
}

std::string capacityLine(const char* name, const std::optional<LineResult>& line) {
  return line ? std::string(name) + " capacity: " + fixedText(inMegabits(line->bytesPerSecond), 3) +
                    " Mbps\n"
              : "";
}

std::string inMilliseconds(double seconds) { return fixedText(seconds * 1e3, 2); }

/// How the numbers came about.
std::string detailLine(const char* name, const std::optional<LineResult>& line) {
  if (!line) {
    return "";
  }
  std::string text = std::string(name) + ": " + std::to_string(line->connections) +
                     " flows, confidence " + nameOf(line->confidence);
  if (line->roundTrips) {
    const auto& [foreign, self] = *line->roundTrips;
    text += ", ms: TCP " + inMilliseconds(foreign.tcp) + ", TLS " + inMilliseconds(foreign.tls) +
            ", HTTP " + inMilliseconds(foreign.http) + ", loaded " + inMilliseconds(self);
  }
  return text + "\n";
}

/// The round trips per minute of the worse direction; nullopt unless every measured direction has
/// them.
std::optional<double> responsivenessOf(const TestResult& result) {
  std::optional<double> worst;
  for (const auto& line : {result.download, result.upload}) {
    if (line && !line->roundTrips) {
      return std::nullopt;
    }
    if (line) {
      const double perMinute = line->roundTrips->perMinute();
      worst = worst ? std::min(*worst, perMinute) : perMinute;
    }
  }
  return worst;
}

} // namespace

double inMegabits(double bytesPerSecond) { return bytesPerSecond * 8.0 / 1e6; }

std::string failureText(const std::string& reason) { return "Failure: " + reason + "\n"; }

std::string resultText(const TestResult& result) {
  std::string text =
      capacityLine("Downlink", result.download) + capacityLine("Uplink", result.upload);
  if (const auto perMinute = responsivenessOf(result)) {
    const double whole = std::round(*perMinute);
    text +=
        std::string("Responsiveness: ") + nameOf(whole) + " (" + fixedText(whole, 0) + " RPM)\n";
  }
  return text + detailLine("Download", result.download) + detailLine("Upload", result.upload);
}

} // namespace tidewell
