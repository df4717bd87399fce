#pragma once

#include "platform/linux/files/FileWatcher.h"

#include <functional>
#include <string>

namespace tidewell {

/// Notices the end of the login session that the program was started in.
///
/// Desktops without systemd's user units leave programs without windows behind at log-out. The
/// login manager, however, then marks the session as closing. Main thread.
class LoginSession {
public:
  /// Whether the session of this identifier has ended or is about to.
  using HasEnded = std::function<bool(const std::string& session)>;

  /// Watches the session of XDG_SESSION_ID; nothing when there is none. Borrows the loop.
  LoginSession(EventLoop& loop, std::function<void()> onEnd);

  /// Watches a session whose record the login manager keeps in this directory.
  LoginSession(EventLoop& loop, std::string session, const std::string& directory,
               HasEnded hasEnded, std::function<void()> onEnd);

  LoginSession(const LoginSession&) = delete;
  LoginSession& operator=(const LoginSession&) = delete;
  ~LoginSession() = default;

private:
  void changed();

  std::string m_session;
  HasEnded m_hasEnded;
  std::function<void()> m_onEnd;
  FileWatcher m_record;
};

} // namespace tidewell
