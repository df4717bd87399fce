#include "platform/linux/process/SystemTools.h"

#include "base/NumberText.h"
#include "platform/linux/files/AutostartLoginItem.h"
#include "platform/linux/process/HelperProgram.h"

#include <array>
#include <cmath>

#include <unistd.h>

namespace tidewell {
namespace {

constexpr std::array<const char*, 5> pingPlaces = {"/usr/bin/ping", "/bin/ping", "/usr/sbin/ping",
                                                   "/sbin/ping", "/app/bin/ping"}; // in a Flatpak

// One request takes two seconds at most; the rest is for start-up on a busy machine.
constexpr Seconds pingLimit = 5.0;

// The helper measures for one second.
constexpr Seconds trafficLimit = 5.0;

// The helper gives up after 40 s.
constexpr Seconds lineTestLimit = 45.0;

bool isExecutable(const std::string& path) { return ::access(path.c_str(), X_OK) == 0; }

std::optional<ToolCommand> pingCommand(const ToolCall& call) {
  for (const char* place : pingPlaces) {
    if (isExecutable(place)) {
      // Whole seconds, rounded up: busybox's ping takes no fractions.
      const std::string wait = fixedText(std::ceil(call.wait), 0);
      return ToolCommand{
          place, {"-c", "1", "-W", wait, call.target}, pingLimit, ChildPriority::utility};
    }
  }
  return std::nullopt;
}

std::optional<ToolCommand> helperCommand(const char* name, std::vector<std::string> arguments,
                                         Seconds limit, ChildPriority priority) {
  std::string executable = helperProgram(runningProgram(), name);
  if (!isExecutable(executable)) {
    return std::nullopt;
  }
  return ToolCommand{std::move(executable), std::move(arguments), limit, priority};
}

} // namespace

std::optional<ToolCommand> commandOf(const ToolCall& call) {
  switch (call.tool) {
  case Tool::ping:
    return pingCommand(call);
  case Tool::processTraffic:
    return helperCommand("nettop", {}, trafficLimit, ChildPriority::utility);
  case Tool::lineTest:
    return helperCommand("networkQuality", {"-s", "-v"}, lineTestLimit, ChildPriority::normal);
  }
  return std::nullopt;
}

} // namespace tidewell
