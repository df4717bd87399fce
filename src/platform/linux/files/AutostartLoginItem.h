#pragma once

#include "platform/LoginItem.h"

#include <optional>
#include <string>

namespace tidewell {

/// The login item as an XDG autostart entry, which every desktop's session starts.
class AutostartLoginItem final : public LoginItem {
public:
  /// The entry lies in `autostart` below the user's configuration directory and starts the program
  /// of this absolute path.
  AutostartLoginItem(const std::string& configurationDirectory, std::string programPath);

  [[nodiscard]] std::optional<std::string> registerItem() override;
  [[nodiscard]] std::optional<std::string> unregisterItem() override;

private:
  std::string m_entryPath;
  std::string m_programPath;
};

/// The absolute path of the program that runs in this process, also when it was replaced by a
/// newer one since; empty when the kernel does not tell.
[[nodiscard]] std::string runningProgram();

} // namespace tidewell
