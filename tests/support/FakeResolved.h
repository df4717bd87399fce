#pragma once

#include "platform/linux/bus/BusMessages.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include <systemd/sd-bus.h>

namespace tidewell::test {

/// A private bus that serves as this process's system bus while it lives.
class PrivateSystemBus : public PrivateBus {
public:
  PrivateSystemBus() { ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address().c_str(), 1); }
  PrivateSystemBus(PrivateSystemBus&&) = delete;
  ~PrivateSystemBus() { ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }
};

/// A service on the private system bus, on a thread of its own, that gives every call of a path the
/// same reply.
class FakeSystemService {
public:
  /// Appends the reply's arguments.
  using Append = std::function<int(sd_bus_message* reply)>;

  FakeSystemService(const char* name, const char* path, Append append)
      : m_append(std::move(append)) {
    sd_bus_open_system(&m_bus);
    sd_bus_add_object(m_bus, nullptr, path, &answer, this);
    EXPECT_GE(sd_bus_request_name(m_bus, name, 0), 0);
    m_thread = std::thread([this] {
      while (!m_isOver) {
        if (sd_bus_process(m_bus, nullptr) == 0) {
          sd_bus_wait(m_bus, 10'000);
        }
      }
    });
  }
  FakeSystemService(FakeSystemService&&) = delete;
  ~FakeSystemService() {
    m_isOver = true;
    m_thread.join();
    sd_bus_flush_close_unref(m_bus);
  }

private:
  static int answer(sd_bus_message* call, void* userData, sd_bus_error* /*error*/) {
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(call, &reply);
    EXPECT_GE(static_cast<FakeSystemService*>(userData)->m_append(reply), 0);
    sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return 1;
  }

  Append m_append;
  sd_bus* m_bus = nullptr;
  std::atomic<bool> m_isOver = false;
  std::thread m_thread;
};

/// systemd-resolved.
class FakeResolved : public FakeSystemService {
public:
  /// `append` appends the property DNS: a variant's content of this signature.
  FakeResolved(const std::string& signature, const Append& append)
      : FakeSystemService("org.freedesktop.resolve1", "/org/freedesktop/resolve1",
                          [signature, append](sd_bus_message* reply) {
                            return BusWriter(*reply)
                                .open(SD_BUS_TYPE_VARIANT, signature.c_str())
                                .step([&] { return append(reply); })
                                .close()
                                .result();
                          }) {}
};

/// connman, with a default service and another one.
class FakeConnman : public FakeSystemService {
public:
  FakeConnman()
      : FakeSystemService("net.connman", "/", [](sd_bus_message* reply) {
          return sd_bus_message_append(
              reply, "a(oa{sv})", 2, "/net/connman/service/wifi", 3, "Type", "s", "wifi",
              "Nameservers", "as", 3, "192.168.1.1", "<b>", "fd00::53", "AutoConnect", "b", 1,
              "/net/connman/service/cable", 1, "Nameservers", "as", 1, "9.9.9.9");
        }) {}
};

} // namespace tidewell::test
