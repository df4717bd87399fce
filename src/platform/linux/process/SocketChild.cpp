#include "platform/linux/process/SocketChild.h"

#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/process/SpawnSettings.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/wait.h>

namespace tidewell {
namespace {

constexpr std::size_t longestMessage = 4096;

// Whether a child inherits the descriptor. If this process was started without a standard output,
// its number belongs to nothing or to a file of this process.
bool isInherited(int descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFD);
  return flags >= 0 && (flags & FD_CLOEXEC) == 0;
}

} // namespace

std::unique_ptr<SocketChild> SocketChild::start(EventLoop& loop, const std::string& executable,
                                                std::vector<std::string> arguments, Events events) {
  std::array<int, 2> ends{};
  if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0) {
    return nullptr;
  }
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  SpawnSettings settings;
  settings.duplicate(theirs.get(), STDIN_FILENO);
  if (!isInherited(STDOUT_FILENO)) {
    settings.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
  }
  const pid_t pid = settings.spawn(executable, std::move(arguments), ownEnvironment(),
                                   SpawnSettings::Start::awaited);
  if (pid < 0) {
    return nullptr;
  }
  std::unique_ptr<SocketChild> child(new SocketChild(pid, std::move(ours), std::move(events)));
  child->m_watch = loop.watch(child->m_socket.get(), EPOLLIN,
                              [self = child.get()](std::uint32_t) { self->read(); });
  return child->m_watch ? std::move(child) : nullptr;
}

SocketChild::SocketChild(pid_t pid, FileDescriptor socket, Events events)
    : m_pid(pid), m_socket(std::move(socket)), m_events(std::move(events)) {}

SocketChild::~SocketChild() {
  m_watch.reset();
  m_socket.reset();
  if (m_pid > 0) {
    ::waitpid(m_pid, nullptr, WNOHANG);
  }
}

bool SocketChild::send(const std::string& message) const {
  return ::send(m_socket.get(), message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
}

void SocketChild::kill() const {
  if (m_pid > 0) {
    ::kill(m_pid, SIGKILL);
  }
}

void SocketChild::read() {
  std::array<char, longestMessage> piece{};
  const auto size = ::recv(m_socket.get(), piece.data(), piece.size(), MSG_DONTWAIT);
  if (size > 0) {
    m_events.heard({piece.data(), static_cast<std::size_t>(size)});
  } else if (size == 0 || (errno != EAGAIN && errno != EINTR && errno != ECONNRESET)) {
    // A child that ends with unread messages resets the connection. What it sent before can still
    // be read after that error.
    reap();
  }
}

void SocketChild::reap() {
  m_watch.reset();
  // The kernel closes descriptors late in a process's exit, so this wait is short. A child that
  // closed the socket but lives on is of no use.
  kill();
  int status = 0;
  pid_t reaped = 0;
  do {
    reaped = ::waitpid(m_pid, &status, 0);
  } while (reaped < 0 && errno == EINTR);
  const bool orderly = reaped == m_pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  m_pid = 0;
  // Copied, because the call may destroy this object.
  const auto ended = m_events.ended;
  ended(orderly);
}

} // namespace tidewell
