#pragma once

#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include <systemd/sd-bus.h>

namespace tidewell::test {

/// A private bus that serves as this process's system bus while it lives.
class PrivateSystemBus : public PrivateBus {
public:
  PrivateSystemBus() { ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address().c_str(), 1); }
  PrivateSystemBus(PrivateSystemBus&&) = delete;
  ~PrivateSystemBus() { ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS"); }
};

/// Takes systemd-resolved's place on the private bus, on a thread of its own.
class FakeResolved {
public:
  /// Appends the property DNS to the reply: a variant's content of this signature.
  using Append = std::function<int(sd_bus_message*)>;

  FakeResolved(std::string signature, Append append)
      : m_signature(std::move(signature)), m_append(std::move(append)) {
    sd_bus_open_system(&m_bus);
    sd_bus_add_object(m_bus, nullptr, "/org/freedesktop/resolve1", &answer, this);
    EXPECT_GE(sd_bus_request_name(m_bus, "org.freedesktop.resolve1", 0), 0);
    m_thread = std::thread([this] {
      while (!m_isOver) {
        if (sd_bus_process(m_bus, nullptr) == 0) {
          sd_bus_wait(m_bus, 10'000);
        }
      }
    });
  }
  FakeResolved(FakeResolved&&) = delete;
  ~FakeResolved() {
    m_isOver = true;
    m_thread.join();
    sd_bus_flush_close_unref(m_bus);
  }

private:
  static int answer(sd_bus_message* call, void* userData, sd_bus_error* /*error*/) {
    auto& self = *static_cast<FakeResolved*>(userData);
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(call, &reply);
    sd_bus_message_open_container(reply, 'v', self.m_signature.c_str());
    EXPECT_GE(self.m_append(reply), 0);
    sd_bus_message_close_container(reply);
    sd_bus_send(nullptr, reply, nullptr);
    sd_bus_message_unref(reply);
    return 1;
  }

  std::string m_signature;
  Append m_append;
  sd_bus* m_bus = nullptr;
  std::atomic<bool> m_isOver = false;
  std::thread m_thread;
};

} // namespace tidewell::test
