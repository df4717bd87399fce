#include "BusPeer.h"

#include "Require.h"
#include "platform/linux/loop/EpollLoop.h"

#include <cstdio>
#include <cstring>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tidewell::fuzz {

namespace {

/// Polls once without sleeping.
void turn(EpollLoop& loop) {
  bool isSecond = false;
  const Subscription check = loop.beforeSleep([&] {
    if (isSecond) {
      loop.quit();
    } else {
      loop.post([] {});
    }
    isSecond = true;
  });
  loop.run();
}

bool isDutyOfBus(std::string_view member) {
  return member == "Hello" || member == "AddMatch" || member == "RemoveMatch";
}

} // namespace

BusPeer::BusPeer()
    : m_address("tidewell-fuzz-" + std::to_string(::getpid())),
      m_listening(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  m_address.copy(&place.sun_path[1], sizeof place.sun_path - 2);
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + m_address.size());
  require(::bind(m_listening.get(), reinterpret_cast<const sockaddr*>(&place), size) == 0);
  require(::listen(m_listening.get(), 1) == 0);
  m_address = "unix:abstract=" + m_address;
}

void BusPeer::accept() {
  m_bus.reset();
  calls.clear();
  answers.clear();
  signals = 0;
  const int descriptor =
      ::accept4(m_listening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  require(descriptor >= 0);
  sd_bus* made = nullptr;
  require(sd_bus_new(&made) >= 0);
  m_bus.reset(made);
  require(sd_bus_set_fd(made, descriptor, descriptor) >= 0);
  require(sd_bus_set_server(made, 1, {}) >= 0 && sd_bus_set_anonymous(made, 1) >= 0);
  require(sd_bus_add_filter(made, nullptr, &BusPeer::heard, this) >= 0);
  require(sd_bus_start(made) >= 0);
}

void BusPeer::settle(EpollLoop& loop) {
  for (int quiet = 0; quiet < 2;) {
    turn(loop);
    quiet = process() ? 0 : quiet + 1;
  }
}

std::uint64_t BusPeer::send(sd_bus_message* message) {
  std::uint64_t cookie = 0;
  return m_bus && sd_bus_send(m_bus.get(), message, &cookie) >= 0 ? cookie : 0;
}

bool BusPeer::process() {
  bool didAny = false;
  while (m_bus) {
    const int result = sd_bus_process(m_bus.get(), nullptr);
    if (result < 0) {
      m_bus.reset();
    }
    if (result <= 0) {
      break;
    }
    didAny = true;
  }
  return didAny;
}

int BusPeer::heard(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  static_cast<BusPeer*>(self)->hear(*message);
  return 1;
}

void BusPeer::hear(sd_bus_message& message) {
  std::uint8_t type = 0;
  sd_bus_message_get_type(&message, &type);
  require(isReadable(message));
  if (type == SD_BUS_MESSAGE_SIGNAL) {
    ++signals;
  } else if (type != SD_BUS_MESSAGE_METHOD_CALL) {
    std::uint64_t cookie = 0;
    sd_bus_message_get_reply_cookie(&message, &cookie);
    answers.push_back(cookie);
  } else if (const char* member = sd_bus_message_get_member(&message); isDutyOfBus(member)) {
    const bool isHello = std::strcmp(member, "Hello") == 0;
    sd_bus_reply_method_return(&message, isHello ? "s" : "", ":1.1");
  } else {
    calls.emplace_back(sd_bus_message_ref(&message));
  }
}

bool isReadable(sd_bus_message& message) {
  static std::FILE* const nowhere = std::fopen("/dev/null", "w");
  const bool isGood = sd_bus_message_dump(&message, nowhere, SD_BUS_MESSAGE_DUMP_SUBTREE_ONLY) >= 0;
  sd_bus_message_rewind(&message, 1);
  return isGood;
}

} // namespace tidewell::fuzz
