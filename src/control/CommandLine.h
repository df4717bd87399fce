#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tidewell {

/// What tidewellctl exits with; tidewellctl(1) lists them.
enum class ExitStatus {
  success = 0,
  failure = 1,
  usage = 2,
  noBus = 3,
  notRunning = 4,
  notResponding = 5,
};

/// The form of a line of `follow`.
enum class FollowFormat { plain, json, waybar, i3bar, polybar };

/// What the user asks tidewellctl for.
struct ControlCommand {
  enum class Verb { status, follow, processes, speedtest, open, quit, version, help };

  Verb verb = Verb::help;
  bool isJson = false;
  /// Start Tidewell if it is not running.
  bool starts = false;
  FollowFormat format = FollowFormat::plain;
  /// The bus method that opens the window, for `open`.
  std::string method;
};

/// A parsed command line, or what is wrong with it.
struct ControlRequest {
  std::optional<ControlCommand> command;
  std::string error;
};

/// Parses the arguments after the program's name. Options may stand anywhere.
[[nodiscard]] ControlRequest parseControlArguments(std::span<const std::string_view> arguments);

/// What `--help` prints.
[[nodiscard]] std::string_view controlUsage();

} // namespace tidewell
