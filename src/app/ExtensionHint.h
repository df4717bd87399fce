#pragma once

#include "base/Scheduler.h"
#include "platform/linux/bus/BusMessages.h"

#include <functional>
#include <memory>
#include <string>

namespace tidewell {

class AppSettings;
class NotificationCenter;
class SessionBus;

/// Tells a user of GNOME Shell, once ever and with low priority, that Tidewell has an extension for
/// it. Says nothing if the extension is not installed or shows the figures already, or if notices
/// are off.
class ExtensionHint {
public:
  /// Seconds from the start. Sessions start the shell's extensions within a few seconds.
  static constexpr Seconds patience = 20.0;

  struct Places {
    /// A file of the installed extension.
    std::string extension;
    /// The file whose existence means that the user was told. It is created.
    std::string told;
  };

  /// The places for a program at this absolute path and a user with this state directory.
  [[nodiscard]] static Places placesFor(const std::string& program, const std::string& state);

  /// Borrows everything. `isShown` says whether a face is attached.
  ExtensionHint(WorkQueue& main, SessionBus& bus, const AppSettings& settings,
                NotificationCenter& center, Places places, std::function<bool()> isShown);

private:
  [[nodiscard]] bool isDue() const;
  void lookForShell();
  void tell();

  SessionBus& m_bus;
  const AppSettings& m_settings;
  NotificationCenter& m_center;
  Places m_places;
  std::function<bool()> m_isShown;
  BusSlot m_question;
  std::unique_ptr<Timer> m_due;
};

} // namespace tidewell
