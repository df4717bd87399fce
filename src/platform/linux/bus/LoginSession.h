#pragma once

#include "base/Scheduler.h"
#include "platform/linux/files/FileWatcher.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tidewell {

/// Whether the login manager has marked the session with this identifier as closing, or has removed
/// its record. Nullopt if the record cannot be read now, for example for lack of file descriptors.
[[nodiscard]] std::optional<bool> hasSessionEnded(const std::string& session);

/// Detects the end of the login session in which the program was started.
///
/// At log-out, desktops without systemd's user units do not end programs that have no windows. The
/// login manager marks the session as closing. A record that cannot be read is no end: it is read
/// again a second later.
class LoginSession {
public:
  /// Like `hasSessionEnded`.
  using HasEnded = std::function<std::optional<bool>(const std::string& session)>;

  /// Watches the session of XDG_SESSION_ID, if there is one and its record can be read. Borrows the
  /// loop.
  LoginSession(EventLoop& loop, std::function<void()> onEnd);

  /// Watches a session whose record is in this directory.
  LoginSession(EventLoop& loop, std::string session, const std::string& directory,
               HasEnded hasEnded, std::function<void()> onEnd);

  LoginSession(LoginSession&&) = delete;

private:
  void look();

  EventLoop& m_loop;
  std::string m_session;
  HasEnded m_hasEnded;
  std::function<void()> m_onEnd;
  FileWatcher m_record;
  std::unique_ptr<Timer> m_retry;
};

} // namespace tidewell
