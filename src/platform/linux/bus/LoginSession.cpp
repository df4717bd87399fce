#include "platform/linux/bus/LoginSession.h"

#include <cerrno>
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

// A record that cannot be read is read again after this time.
constexpr Seconds retryDelay = 1.0;

} // namespace

std::optional<bool> hasSessionEnded(const std::string& session) {
  char* state = nullptr;
  const int result = sd_session_get_state(session.c_str(), &state);
  if (result == -ENXIO) { // there is no such session: sd_session_get_state(3)
    return true;
  }
  if (result < 0) {
    return std::nullopt;
  }
  const bool isClosing = std::string_view(state) == "closing";
  std::free(state); // NOLINT(cppcoreguidelines-no-malloc): allocated by sd-login
  return isClosing;
}

LoginSession::LoginSession(EventLoop& loop, std::function<void()> onEnd)
    : LoginSession(loop, environmentSession(), recordDirectory, hasSessionEnded, std::move(onEnd)) {
}

LoginSession::LoginSession(EventLoop& loop, std::string session, const std::string& directory,
                           HasEnded hasEnded, std::function<void()> onEnd)
    : m_loop(loop), m_session(std::move(session)), m_hasEnded(std::move(hasEnded)),
      m_onEnd(std::move(onEnd)),
      m_record(
          directory + "/" + m_session,
          [&loop](int descriptor, std::uint32_t events, EventLoop::FdHandler handler) {
            return loop.watch(descriptor, events, std::move(handler));
          },
          [this](bool) { look(); }) {
  // If the session has ended already, the variable was inherited from an older one.
  if (m_session.empty() || m_session.find('/') != std::string::npos ||
      m_hasEnded(m_session).value_or(true)) {
    return;
  }
  look();
}

void LoginSession::look() {
  const bool isWatched = m_record.arm();
  const std::optional<bool> hasEnded = m_hasEnded(m_session);
  if (hasEnded == true) {
    m_retry.reset();
    m_onEnd();
  } else if (!isWatched || !hasEnded) {
    m_retry = m_loop.repeat(retryDelay, 0.0, [this] { look(); });
  }
}

} // namespace tidewell
