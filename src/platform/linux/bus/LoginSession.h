#pragma once

#include "platform/linux/files/FileWatcher.h"

#include <functional>
#include <string>

namespace tidewell {

/// Detects the end of the login session in which the program was started.
///
/// At log-out, desktops without systemd's user units do not end programs that have no windows. The
/// login manager marks the session as closing.
class LoginSession {
public:
  /// Whether the session with this identifier is closing or has ended.
  using HasEnded = std::function<bool(const std::string& session)>;

  /// Watches the session of XDG_SESSION_ID, if there is one. Borrows the loop.
  LoginSession(EventLoop& loop, std::function<void()> onEnd);

  /// Watches a session whose record is in this directory.
  LoginSession(EventLoop& loop, std::string session, const std::string& directory,
               HasEnded hasEnded, std::function<void()> onEnd);

  LoginSession(LoginSession&&) = delete;

private:
  void changed();

  std::string m_session;
  HasEnded m_hasEnded;
  std::function<void()> m_onEnd;
  FileWatcher m_record;
};

} // namespace tidewell
