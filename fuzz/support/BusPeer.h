#pragma once

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <deque>
#include <string>

namespace tidewell {

class EpollLoop;

} // namespace tidewell

namespace tidewell::fuzz {

/// Plays a session bus and all its clients, in the process and on the thread of the program that
/// connects.
class BusPeer {
public:
  BusPeer();

  /// The address to connect to.
  [[nodiscard]] const std::string& address() const { return m_address; }

  /// Drops the last connection and accepts the waiting one.
  void accept();
  [[nodiscard]] bool isConnected() const { return m_bus != nullptr; }
  [[nodiscard]] sd_bus* bus() { return m_bus.get(); }

  /// Serves both sides until neither sends anything.
  void settle(EpollLoop& loop);

  /// Sends a message and returns its cookie, 0 on failure.
  std::uint64_t send(sd_bus_message* message);

  /// Unanswered calls, oldest first, without those to the bus itself.
  std::deque<BusMessage> calls;
  /// Cookies of the received replies.
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

/// Whether the whole message can be read by its signature.
[[nodiscard]] bool isReadable(sd_bus_message& message);

} // namespace tidewell::fuzz
