#include "platform/linux/network/NetlinkQuestion.h"

#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/network/NetlinkAttributes.h"

#include <cerrno>
#include <span>

#include <libmnl/libmnl.h>
#include <sys/socket.h>
#include <sys/time.h>

namespace tidewell {

namespace {

// The kernel answers before send returns; the limit only keeps a fault from lasting.
constexpr timeval replyLimit{1, 0};

// The kernel never makes a longer part of an answer than this.
constexpr std::size_t partSize = 32768;

// Far above the addresses and the wireless interfaces of any machine.
constexpr std::size_t mostBytes = 1U << 20U;

FileDescriptor openSocket(int protocol) {
  FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, protocol));
  ::setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &replyLimit, sizeof replyLimit);
  // Older kernels answer without regard to the question's filters; the parsers filter as well.
  const int on = 1;
  ::setsockopt(socket.get(), SOL_NETLINK, NETLINK_GET_STRICT_CHK, &on, sizeof on);
  return socket;
}

bool send(const FileDescriptor& socket, const nlmsghdr& message) {
  sockaddr_nl kernel{};
  kernel.nl_family = AF_NETLINK;
  return ::sendto(socket.get(), &message, message.nlmsg_len, 0,
                  reinterpret_cast<const sockaddr*>(&kernel), sizeof kernel) >= 0;
}

/// The next part of the kernel's answer, in the buffer; empty when none comes.
std::span<std::byte> receive(const FileDescriptor& socket, std::span<std::byte> buffer) {
  while (true) {
    sockaddr_nl sender{};
    socklen_t senderSize = sizeof sender;
    const auto size = ::recvfrom(socket.get(), buffer.data(), buffer.size(), MSG_TRUNC,
                                 reinterpret_cast<sockaddr*>(&sender), &senderSize);
    if (size < 0 && errno == EINTR) {
      continue;
    }
    if (size < 0 || static_cast<std::size_t>(size) > buffer.size()) {
      return {};
    }
    if (sender.nl_pid == 0) {
      return buffer.first(static_cast<std::size_t>(size));
    }
  }
}

bool isLast(std::span<const std::byte> part) {
  bool more = false;
  forEachMessage(part, [&](const nlmsghdr& message) {
    more = (message.nlmsg_flags & NLM_F_MULTI) != 0 && message.nlmsg_type != NLMSG_DONE &&
           message.nlmsg_type != NLMSG_ERROR;
    return more;
  });
  return !more;
}

} // namespace

NetlinkQuestion::NetlinkQuestion(std::uint16_t type, std::uint16_t flags)
    : m_message(mnl_nlmsg_put_header(m_bytes.data())) {
  m_message->nlmsg_type = type;
  m_message->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
}

std::vector<std::byte> NetlinkQuestion::ask(int protocol) {
  const FileDescriptor socket = openSocket(protocol);
  if (!socket.isOpen() || !send(socket, *m_message)) {
    return {};
  }
  std::vector<std::byte> answer;
  std::vector<std::byte> buffer(partSize);
  while (answer.size() < mostBytes) {
    const auto part = receive(socket, buffer);
    if (part.empty()) {
      return {};
    }
    answer.insert(answer.end(), part.begin(), part.end());
    answer.resize(NLMSG_ALIGN(answer.size()));
    if (isLast(part)) {
      return answer;
    }
  }
  return {};
}

void* NetlinkQuestion::addSpace(std::size_t size) {
  return mnl_nlmsg_put_extra_header(m_message, size);
}

} // namespace tidewell
