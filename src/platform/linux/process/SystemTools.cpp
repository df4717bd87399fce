#include "platform/linux/process/SystemTools.h"

#include "base/NumberText.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/process/HelperProgram.h"

#include <array>
#include <cmath>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
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

// Cloudflare's public resolver over IPv4, which the probe asks for, and over IPv6.
constexpr const char* target4 = "1.1.1.1";
constexpr const char* target6 = "2606:4700:4700::1111";

/// Whether the kernel has a route to this address. Sends nothing: connecting a datagram socket only
/// looks up the route.
bool hasRoute(const sockaddr& address, socklen_t size) {
  const FileDescriptor socket(::socket(address.sa_family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  return socket.isOpen() && ::connect(socket.get(), &address, size) == 0;
}

bool hasRoute4(const char* text) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  ::inet_pton(AF_INET, text, &address.sin_addr);
  return hasRoute(reinterpret_cast<const sockaddr&>(address), sizeof address);
}

bool hasRoute6(const char* text) {
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_port = htons(9);
  ::inet_pton(AF_INET6, text, &address.sin6_addr);
  return hasRoute(reinterpret_cast<const sockaddr&>(address), sizeof address);
}

/// The address to ping: on a line without IPv4, the same operator's over IPv6.
std::string reachableTarget(const std::string& target) {
  const bool isOnlyOver6 = target == target4 && !hasRoute4(target4) && hasRoute6(target6);
  return isOnlyOver6 ? target6 : target;
}

bool isExecutable(const std::string& path) { return ::access(path.c_str(), X_OK) == 0; }

std::optional<ToolCommand> pingCommand(const ToolCall& call) {
  for (const char* place : pingPlaces) {
    if (isExecutable(place)) {
      // Whole seconds, rounded up: busybox's ping takes no fractions.
      const std::string wait = fixedText(std::ceil(call.wait), 0);
      return ToolCommand{place,
                         {"-c", "1", "-W", wait, reachableTarget(call.target)},
                         pingLimit,
                         ChildPriority::utility};
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
