#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The option with which the resident starts the windows' process, followed by the absolute path of
/// the resident's program.
inline constexpr std::string_view residentOption = "--resident=";

/// A request from the resident to the windows' process: one message on the socket between them.
struct WindowRequest {
  enum class Kind {
    panel,
    detail,
    settings,
    /// Copies `text` to the clipboard.
    copy,
    /// Shows the item in a system tray or a window, because no panel shows it.
    showItem,
    hideItem,
    /// Exits, because the resident quits.
    quit,
  };

  /// A position on the screen, in the pixels of the item's host.
  struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
  };

  Kind kind = Kind::panel;
  /// The host's activation token, or empty.
  std::string token;
  /// Where the user clicked, if the host reports it.
  std::optional<Point> point;
  std::string text;

  friend bool operator==(const WindowRequest&, const WindowRequest&) = default;
};

/// The longest activation token in bytes. Longer ones are ignored; desktops create short ones.
inline constexpr std::size_t longestActivationToken = 255;

/// A report from the windows' process to the resident.
struct WindowReport {
  enum class Kind {
    /// The oldest pending request was taken.
    taken,
    /// The window was opened or closed.
    opened,
    closed,
  };

  Kind kind = Kind::taken;
  WindowRequest::Kind window = WindowRequest::Kind::panel;

  friend bool operator==(const WindowReport&, const WindowReport&) = default;
};

/// The longest message in bytes. Longer ones are truncated.
inline constexpr std::size_t longestWindowMessage = 4096;

[[nodiscard]] std::string messageOf(const WindowRequest& request);
[[nodiscard]] std::string messageOf(const WindowReport& report);

/// Return nullopt if the message is invalid.
[[nodiscard]] std::optional<WindowRequest> parseWindowRequest(std::string_view message);
[[nodiscard]] std::optional<WindowReport> parseWindowReport(std::string_view message);

} // namespace tidewell
