#include "SimulatedBus.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <utility>

#include <poll.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tidewell::test {

namespace {

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* programName = "com.halden.Tidewell";

FileDescriptor listenAt(const std::string& name) {
  FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  name.copy(&place.sun_path[1], sizeof place.sun_path - 2);
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&place), size) != 0 ||
      ::listen(socket.get(), 4) != 0) {
    socket.reset();
  }
  return socket;
}

std::string newName() {
  static std::atomic<int> last = 0;
  return "tidewell-simulation-" + std::to_string(::getpid()) + "-" + std::to_string(++last);
}

} // namespace

std::string nextText(sd_bus_message& message) {
  const char* text = nullptr;
  return sd_bus_message_read(&message, "s", &text) > 0 && text != nullptr ? text : std::string();
}

SimulatedBus::SimulatedBus(const VirtualScheduler& scheduler, EventLoop& world, Findings& findings)
    : m_scheduler(scheduler), m_world(world), m_findings(findings),
      m_address("unix:abstract=" + newName()),
      m_beforeSleep(world.beforeSleep([this] { flush(); })) {
  comeUp();
}

SimulatedBus::~SimulatedBus() { m_pending.clear(); }

void SimulatedBus::goDown() {
  m_listeningWatch.reset();
  m_listening.reset();
  lose();
}

void SimulatedBus::comeUp() {
  if (!m_listening.isOpen()) {
    m_changedAt = m_scheduler.now();
    m_listening = listenAt(m_address.substr(m_address.find('=') + 1));
    m_findings.require(m_listening.isOpen(), "the simulated bus listens");
    m_listeningWatch =
        m_world.watch(m_listening.get(), EPOLLIN, [this](std::uint32_t) { accept(); });
  }
}

bool SimulatedBus::mayHaveHeld(Ticks sentAt) const {
  constexpr Ticks moment = std::chrono::seconds(1);
  return m_hungAt <= sentAt && sentAt <= m_resumedAt && m_scheduler.now() - m_resumedAt <= moment;
}

void SimulatedBus::setHanging(bool isHanging) {
  m_hangs += isHanging ? 1 : 0;
  if (isHanging != m_isHanging) {
    (isHanging ? m_hungAt : m_resumedAt) = m_scheduler.now();
  }
  m_isHanging = isHanging;
  m_changedAt = m_scheduler.now();
  if (m_watch) {
    m_events = isHanging ? 0U : 0U + EPOLLIN;
    m_watch->setEvents(m_events);
  }
}

bool SimulatedBus::isSettled() const {
  constexpr Ticks longestCall = std::chrono::seconds(26);
  return !m_isHanging && m_scheduler.now() - m_changedAt > longestCall;
}

bool SimulatedBus::hasBeenUpFor(Ticks span) const {
  return isUp() && !m_isHanging && m_scheduler.now() - m_changedAt > span;
}

void SimulatedBus::accept() {
  const int descriptor =
      ::accept4(m_listening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  lose();
  sd_bus* made = nullptr;
  const bool isMade = descriptor >= 0 && sd_bus_new(&made) >= 0;
  m_bus.reset(made);
  m_findings.require(isMade && sd_bus_set_fd(made, descriptor, descriptor) >= 0 &&
                         sd_bus_set_server(made, 1, {}) >= 0 &&
                         sd_bus_set_anonymous(made, 1) >= 0 &&
                         sd_bus_add_filter(made, nullptr, &SimulatedBus::heard, this) >= 0 &&
                         sd_bus_start(made) >= 0,
                     "the simulated bus takes a connection");
  m_watch = m_world.watch(descriptor, EPOLLIN, [this](std::uint32_t) { process(); });
  setHanging(m_isHanging);
}

void SimulatedBus::process() {
  if (m_isHanging) {
    // Errors are reported regardless: the connection is lost.
    lose();
    return;
  }
  while (m_bus) {
    const int result = sd_bus_process(m_bus.get(), nullptr);
    if (result < 0) {
      lose();
    }
    if (result <= 0) {
      break;
    }
  }
}

/// Waits for room in the socket while output is pending.
void SimulatedBus::flush() {
  const int wanted = m_bus && !m_isHanging ? sd_bus_get_events(m_bus.get()) : 0;
  const std::uint32_t events =
      (wanted > 0 && (wanted & POLLOUT) != 0 ? 0U + EPOLLOUT : 0U) | EPOLLIN;
  if (m_bus && !m_isHanging && std::exchange(m_events, events) != events) {
    m_watch->setEvents(events);
  }
}

void SimulatedBus::lose() {
  m_changedAt = m_scheduler.now();
  m_watch.reset();
  m_isGreeted = false;
  for (Pending& pending : std::exchange(m_pending, {})) {
    pending.slot.reset();
    pending.answer(nullptr);
  }
  if (std::exchange(m_bus, nullptr)) {
    for (const auto& [name, member] : m_members) {
      member.lost();
    }
  }
}

int SimulatedBus::heard(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  std::uint8_t type = 0;
  sd_bus_message_get_type(message, &type);
  if (type != SD_BUS_MESSAGE_METHOD_CALL && type != SD_BUS_MESSAGE_SIGNAL) {
    return 0; // replies are handled elsewhere
  }
  static_cast<SimulatedBus*>(self)->hear(*message);
  return 1;
}

void SimulatedBus::hear(sd_bus_message& message) {
  if (sd_bus_message_is_signal(&message, nullptr, nullptr) > 0) {
    for (const auto& listener : m_listeners) {
      sd_bus_message_rewind(&message, 1);
      listener(message);
    }
    return;
  }
  const std::string destination = sd_bus_message_get_destination(&message);
  if (destination == busName) {
    answerDuty(message, sd_bus_message_get_member(&message));
  } else if (const auto member = m_members.find(destination); member != m_members.end()) {
    member->second.service(message);
  } else {
    sd_bus_reply_method_errorf(&message, "org.freedesktop.DBus.Error.ServiceUnknown", "nobody");
  }
}

void SimulatedBus::answerDuty(sd_bus_message& call, const std::string& member) {
  if (member == "Hello") {
    ++m_connections;
    m_isGreeted = true;
    sd_bus_reply_method_return(&call, "s", ":1.1");
    for (const auto& greeted : m_onGreeted) {
      greeted();
    }
  } else if (member == "RequestName") {
    m_findings.require(nextText(call) == programName, "the name that the program claims");
    sd_bus_reply_method_return(&call, "u", hasOtherInstance ? 3U : 1U);
  } else if (member == "GetNameOwner") {
    const std::string owner = m_owners[nextText(call)];
    if (owner.empty()) {
      sd_bus_reply_method_errorf(&call, "org.freedesktop.DBus.Error.NameHasNoOwner", "nobody");
    } else {
      sd_bus_reply_method_return(&call, "s", owner.c_str());
    }
  } else if (member == "GetConnectionUnixProcessID") {
    sd_bus_reply_method_return(&call, "u", static_cast<std::uint32_t>(::getpid()));
  } else {
    m_findings.require(member == "AddMatch" || member == "RemoveMatch", "a call of the bus",
                       member);
    sd_bus_reply_method_return(&call, "");
  }
}

void SimulatedBus::serve(const std::string& name, Service service, std::function<void()> lost) {
  m_members[name] = {std::move(service), std::move(lost)};
}

void SimulatedBus::setOwner(const std::string& name, const std::string& owner) {
  const std::string before = std::exchange(m_owners[name], owner);
  if (m_isGreeted && before != owner) {
    tellOwner(name, before, owner);
  }
}

void SimulatedBus::tellOwner(const std::string& name, const std::string& before,
                             const std::string& after) {
  const auto signal = takeFrom<BusMessage>([&](sd_bus_message** made) {
    return sd_bus_message_new_signal(m_bus.get(), made, "/org/freedesktop/DBus", busName,
                                     "NameOwnerChanged");
  });
  sd_bus_message_set_sender(signal.get(), busName);
  sd_bus_message_append(signal.get(), "sss", name.c_str(), before.c_str(), after.c_str());
  sd_bus_send(m_bus.get(), signal.get(), nullptr);
}

void SimulatedBus::emit(const char* path, const char* interface, const char* member) {
  if (m_isGreeted) {
    const auto signal = takeFrom<BusMessage>([&](sd_bus_message** made) {
      return sd_bus_message_new_signal(m_bus.get(), made, path, interface, member);
    });
    sd_bus_send(m_bus.get(), signal.get(), nullptr);
  }
}

void SimulatedBus::call(const char* path, const char* interface, const char* member,
                        const Append& append, Answer answer) {
  if (!m_isGreeted) {
    answer(nullptr);
    return;
  }
  const auto message = takeFrom<BusMessage>([&](sd_bus_message** made) {
    return sd_bus_message_new_method_call(m_bus.get(), made, ":1.1", path, interface, member);
  });
  if (append) {
    append(*message);
  }
  m_pending.push_front({this, nullptr, std::move(answer), {}});
  m_pending.front().self = m_pending.begin();
  const auto answered = [](sd_bus_message* reply, void* data, sd_bus_error*) {
    auto& pending = *static_cast<Pending*>(data);
    const auto tell = std::move(pending.answer);
    pending.bus->m_pending.erase(pending.self);
    tell(reply);
    return 0;
  };
  m_pending.front().slot = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_async(m_bus.get(), slot, message.get(), answered, &m_pending.front(),
                             UINT64_MAX);
  });
}

} // namespace tidewell::test
