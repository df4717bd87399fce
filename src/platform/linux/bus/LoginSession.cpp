#include "platform/linux/bus/LoginSession.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include <systemd/sd-login.h>

namespace tidewell {
namespace {

constexpr const char* recordDirectory = "/run/systemd/sessions";

std::string environmentSession() {
  const char* session = std::getenv("XDG_SESSION_ID");
  return session != nullptr ? session : "";
}

bool loginManagerSaysEnded(const std::string& session) {
  char* state = nullptr;
  if (sd_session_get_state(session.c_str(), &state) < 0) {
    return true;
  }
  const bool isClosing = std::string_view(state) == "closing";
  std::free(state); // NOLINT(cppcoreguidelines-no-malloc): allocated by sd-login
  return isClosing;
}

} // namespace

LoginSession::LoginSession(EventLoop& loop, std::function<void()> onEnd)
    : LoginSession(loop, environmentSession(), recordDirectory, loginManagerSaysEnded,
                   std::move(onEnd)) {}

LoginSession::LoginSession(EventLoop& loop, std::string session, const std::string& directory,
                           HasEnded hasEnded, std::function<void()> onEnd)
    : m_session(std::move(session)), m_hasEnded(std::move(hasEnded)), m_onEnd(std::move(onEnd)),
      m_record(
          directory + "/" + m_session,
          [&loop](int descriptor, std::uint32_t events, EventLoop::FdHandler handler) {
            return loop.watch(descriptor, events, std::move(handler));
          },
          [this](bool) { changed(); }) {
  // If the session has ended already, the variable was inherited from an older one.
  if (m_session.empty() || m_session.find('/') != std::string::npos || m_hasEnded(m_session)) {
    return;
  }
  static_cast<void>(m_record.arm());
}

void LoginSession::changed() {
  if (m_hasEnded(m_session)) {
    m_onEnd();
  } else {
    static_cast<void>(m_record.arm());
  }
}

} // namespace tidewell
