#pragma once

#include "Findings.h"
#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tidewell::test {

/// A session bus with the program as its only real connection; objects that register here play the
/// others. It may go down, come up again and hang.
class SimulatedBus {
public:
  /// Answers a call to a name; without a reply the call stays pending.
  using Service = std::function<void(sd_bus_message& call)>;
  /// Called with the program's reply; null if the connection is lost meanwhile.
  using Answer = std::function<void(sd_bus_message* reply)>;
  using Append = std::function<void(sd_bus_message& call)>;

  SimulatedBus(const VirtualScheduler& scheduler, EventLoop& world, Findings& findings);
  ~SimulatedBus();
  SimulatedBus(SimulatedBus&&) = delete;

  [[nodiscard]] const std::string& address() const { return m_address; }

  void goDown();
  void comeUp();
  /// While hanging, it reads and answers nothing.
  void setHanging(bool isHanging);
  /// Whether a message sent at that time may have been held by a hanging bus until now.
  [[nodiscard]] bool mayHaveHeld(Ticks sentAt) const;

  /// Whether the program is on the bus and the bus answers.
  [[nodiscard]] bool isServing() const { return m_isGreeted && !m_isHanging; }
  /// Whether it has been serving, or down, for the duration of the longest call.
  [[nodiscard]] bool isSettled() const;
  /// Whether connections have been possible for this long.
  [[nodiscard]] bool hasBeenUpFor(Ticks span) const;
  [[nodiscard]] bool isUp() const { return m_listening.isOpen(); }
  /// The number of the program's connection, counted from 1.
  [[nodiscard]] int connection() const { return m_connections; }

  /// Registers who answers calls to this name and is notified when the connection is lost.
  void serve(const std::string& name, Service service, std::function<void()> lost);
  /// Registers a listener for every signal of the program.
  void listen(std::function<void(sd_bus_message& signal)> listener) {
    m_listeners.push_back(std::move(listener));
  }
  /// Registers a function to call when the program has greeted the bus.
  void greet(std::function<void()> function) { m_onGreeted.push_back(std::move(function)); }

  /// Sets a name's owner, none if `owner` is empty, and notifies the program.
  void setOwner(const std::string& name, const std::string& owner);
  /// Sends a signal without arguments.
  void emit(const char* path, const char* interface, const char* member);
  /// The number of times it began to hang.
  [[nodiscard]] int hangs() const { return m_hangs; }
  [[nodiscard]] bool isHanging() const { return m_isHanging; }
  [[nodiscard]] Ticks now() const { return m_scheduler.now(); }

  /// The program's next request for its name finds another instance.
  bool hasOtherInstance = false;

  /// Calls a method of the program.
  void call(const char* path, const char* interface, const char* member, const Append& append,
            Answer answer);
  /// Calls without a reply yet.
  [[nodiscard]] std::size_t pending() const { return m_pending.size(); }

private:
  struct Close {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };
  struct Pending {
    SimulatedBus* bus;
    BusSlot slot;
    Answer answer;
    std::list<Pending>::iterator self;
  };
  struct Member {
    Service service;
    std::function<void()> lost;
  };

  static int heard(sd_bus_message* message, void* self, sd_bus_error* error);
  void hear(sd_bus_message& message);
  void answerDuty(sd_bus_message& call, const std::string& member);
  void tellOwner(const std::string& name, const std::string& before, const std::string& after);
  void accept();
  void process();
  void flush();
  void lose();

  const VirtualScheduler& m_scheduler;
  EventLoop& m_world;
  Findings& m_findings;
  std::string m_address;
  FileDescriptor m_listening;
  std::unique_ptr<FdWatch> m_listeningWatch;
  std::unique_ptr<sd_bus, Close> m_bus;
  std::unique_ptr<FdWatch> m_watch;
  bool m_isGreeted = false;
  bool m_isHanging = false;
  Ticks m_hungAt = Ticks::zero();
  Ticks m_resumedAt = Ticks::zero();
  Ticks m_changedAt = Ticks::zero();
  std::uint32_t m_events = 0;
  int m_connections = 0;
  int m_hangs = 0;
  std::map<std::string, Member> m_members;
  std::map<std::string, std::string> m_owners;
  std::vector<std::function<void(sd_bus_message&)>> m_listeners;
  std::vector<std::function<void()>> m_onGreeted;
  std::list<Pending> m_pending;
  Subscription m_beforeSleep;
};

/// The string at a message's position, empty if there is none.
[[nodiscard]] std::string nextText(sd_bus_message& message);

} // namespace tidewell::test
