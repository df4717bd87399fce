#pragma once

#include "platform/LoginItem.h"

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// The login item as an XDG autostart entry, which the sessions of all desktops start.
class AutostartLoginItem final : public LoginItem {
public:
  /// The entry lies in `autostart` in the user's configuration directory and starts the program of
  /// this absolute path.
  AutostartLoginItem(const std::string& configurationDirectory, std::string programPath);

  [[nodiscard]] std::optional<std::string> registerItem() override;
  [[nodiscard]] std::optional<std::string> unregisterItem() override;

private:
  std::string m_entryPath;
  std::string m_programPath;
};

/// A value of type string, escaped as the Desktop Entry specification requires.
[[nodiscard]] std::string stringValue(std::string_view text);

/// The Exec value that starts the program of this path without arguments, quoted and escaped as the
/// Desktop Entry specification requires, whatever the path contains.
[[nodiscard]] std::string execValue(std::string_view programPath);

} // namespace tidewell
