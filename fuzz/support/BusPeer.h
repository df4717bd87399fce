#pragma once

#include "platform/linux/bus/BusTypes.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <deque>
#include <string>

namespace tidewell {

class EventLoop;

} // namespace tidewell

namespace tidewell::fuzz {

/// Stands for a session bus and for everybody on it, in the process and on the thread of the
/// program that connects to it.
class BusPeer {
public:
  BusPeer();

  /// Where a connection finds it.
  [[nodiscard]] const std::string& address() const { return m_address; }

  /// Lets go of the last connection and takes the one that waits.
  void accept();
  [[nodiscard]] bool isConnected() const { return m_bus != nullptr; }
  [[nodiscard]] sd_bus* bus() { return m_bus.get(); }

  /// Serves both sides until neither has anything more to say.
  void settle(EventLoop& loop);

  /// Sends and forgets; gives back the message's cookie, 0 where it could not be sent.
  std::uint64_t send(sd_bus_message* message);

  /// Calls that await an answer, oldest first; the bus's own duties are not among them.
  std::deque<BusMessage> calls;
  /// Cookies of the answers that have come.
  std::deque<std::uint64_t> answers;
  int signals = 0;

private:
  struct Release {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };

  static int heard(sd_bus_message* message, void* self, sd_bus_error* error);
  void hear(sd_bus_message& message);
  [[nodiscard]] bool process();

  std::string m_address;
  FileDescriptor m_listening;
  std::unique_ptr<sd_bus, Release> m_bus;
};

/// Whether everything in the message can be read as what it is said to be.
[[nodiscard]] bool isReadable(sd_bus_message& message);

} // namespace tidewell::fuzz
