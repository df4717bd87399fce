#include "platform/linux/SystemTools.h"

#include "base/NumberText.h"
#include "platform/linux/AutostartLoginItem.h"
#include "platform/linux/HelperProgram.h"

#include <array>
#include <cmath>

#include <unistd.h>

namespace tidewell {

namespace {

constexpr const char* pingPath = "/sbin/ping";
constexpr std::array<const char*, 4> pingPlaces = {"/usr/bin/ping", "/bin/ping", "/usr/sbin/ping",
                                                   "/sbin/ping"};

// One request is answered or given up within its two seconds; the rest is start-up on a busy
// machine.
constexpr Seconds pingLimit = 5.0;

constexpr const char* networkQualityPath = "/usr/bin/networkQuality";

// The helper ends by itself after 40 s.
constexpr Seconds networkQualityLimit = 45.0;

std::optional<std::string> firstExecutable(const auto& places) {
  for (const char* place : places) {
    if (::access(place, X_OK) == 0) {
      return place;
    }
  }
  return std::nullopt;
}

/// Milliseconds as whole seconds, rounded up: busybox's ping takes no fractions.
std::string inSeconds(const std::string& milliseconds) {
  const auto value = parseDouble(milliseconds);
  return value ? fixedText(std::ceil(*value / 1e3), 0) : milliseconds;
}

std::vector<std::string> pingArguments(std::vector<std::string> arguments) {
  for (std::size_t index = 1; index < arguments.size(); ++index) {
    if (arguments[index - 1] == "-W") {
      arguments[index] = inSeconds(arguments[index]);
    }
  }
  return arguments;
}

std::optional<ToolCall> networkQuality(const std::vector<std::string>& arguments) {
  const std::string helper = helperProgram(runningProgram(), "networkQuality");
  if (::access(helper.c_str(), X_OK) != 0) {
    return std::nullopt;
  }
  return ToolCall{helper, arguments, networkQualityLimit};
}

} // namespace

std::optional<ToolCall> systemTool(const std::string& path,
                                   const std::vector<std::string>& arguments) {
  if (path == networkQualityPath) {
    return networkQuality(arguments);
  }
  if (path != pingPath) {
    return std::nullopt;
  }
  const auto executable = firstExecutable(pingPlaces);
  if (!executable) {
    return std::nullopt;
  }
  return ToolCall{*executable, pingArguments(arguments), pingLimit};
}

} // namespace tidewell
