#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// What the resident asks of the windows' process. One message each on the socket between them.
struct WindowRequest {
  enum class Kind {
    panel,
    detail,
    settings,
    /// Put `text` on the clipboard.
    copy,
    /// Show the item ourselves, in whatever tray or window there is: no panel takes it.
    showItem,
    hideItem,
    /// End: the program was told to.
    quit,
  };

  /// A place on the screen in the pixels of the item's host.
  struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
  };

  Kind kind = Kind::panel;
  /// What the host gave to prove that the user asked; empty when it gave none.
  std::string token;
  /// Where the user clicked; none when the host does not tell.
  std::optional<Point> point;
  std::string text;

  friend bool operator==(const WindowRequest&, const WindowRequest&) = default;
};

/// The longest proof that is passed on; any but it is taken for none. Desktops make short ones.
inline constexpr std::size_t longestActivationToken = 255;

/// What the windows' process answers.
struct WindowReport {
  enum class Kind {
    /// The oldest request that was not yet taken is.
    taken,
    /// The window of this name is on the screen, or no longer.
    opened,
    closed,
  };

  Kind kind = Kind::taken;
  WindowRequest::Kind window = WindowRequest::Kind::panel;

  friend bool operator==(const WindowReport&, const WindowReport&) = default;
};

/// The longest message that is sent; a longer one is cut.
inline constexpr std::size_t longestWindowMessage = 4096;

[[nodiscard]] std::string messageOf(const WindowRequest& request);
[[nodiscard]] std::string messageOf(const WindowReport& report);

/// None for what is no request.
[[nodiscard]] std::optional<WindowRequest> parseWindowRequest(std::string_view message);
[[nodiscard]] std::optional<WindowReport> parseWindowReport(std::string_view message);

} // namespace tidewell
