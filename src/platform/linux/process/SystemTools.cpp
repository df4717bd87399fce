#include "platform/linux/process/SystemTools.h"

#include "base/NumberText.h"
#include "platform/linux/files/AutostartLoginItem.h"
#include "platform/linux/process/HelperProgram.h"

#include <array>
#include <cmath>

#include <unistd.h>

namespace tidewell {

namespace {

constexpr const char* pingPath = "/sbin/ping";
constexpr std::array<const char*, 5> pingPlaces = {"/usr/bin/ping", "/bin/ping", "/usr/sbin/ping",
                                                   "/sbin/ping", "/app/bin/ping"}; // Flatpak's

// One request is answered or given up within its two seconds; the rest is start-up on a busy
// machine.
constexpr Seconds pingLimit = 5.0;

/// A tool that Linux lacks, and our helper in its place.
struct Helper {
  const char* path;
  const char* name;
  Seconds limit;
};
constexpr std::array<Helper, 2> helpers = {{
    {"/usr/bin/nettop", "nettop", 5.0},                  // measures for one second
    {"/usr/bin/networkQuality", "networkQuality", 45.0}, // ends by itself after 40 s
}};

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

std::optional<ToolCall> callOf(const Helper& helper, const std::vector<std::string>& arguments) {
  const std::string executable = helperProgram(runningProgram(), helper.name);
  if (::access(executable.c_str(), X_OK) != 0) {
    return std::nullopt;
  }
  return ToolCall{executable, arguments, helper.limit};
}

} // namespace

std::optional<ToolCall> systemTool(const std::string& path,
                                   const std::vector<std::string>& arguments) {
  for (const Helper& helper : helpers) {
    if (path == helper.path) {
      return callOf(helper, arguments);
    }
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
