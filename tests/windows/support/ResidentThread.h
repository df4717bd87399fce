#pragma once

#include "app/ResidentShell.h"
#include "connectivity/MonitorState.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"
#include "support/FakeLoginItem.h"
#include "support/FakePreferencesStore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tidewell::test {

/// The resident's own face on a bus, over states that a test writes, on a thread with the
/// resident's own loop. Ends with the object.
class ResidentThread {
public:
  struct States {
    SamplerState sampler;
    MonitorState monitor;
    TrackerState tracker;
    SpeedTestState speedTest;
  };

  explicit ResidentThread(std::string address)
      : m_thread([this, address = std::move(address)] { run(address); }) {}
  ResidentThread(const ResidentThread&) = delete;
  ResidentThread& operator=(const ResidentThread&) = delete;
  ~ResidentThread() {
    hand({});
    m_thread.join();
  }

  /// Lets the resident publish something.
  void publish(std::function<void(States& states)> change) { hand(std::move(change)); }

  std::atomic<int> quits = 0;
  std::atomic<int> speedTests = 0;

private:
  using Change = std::function<void(States& states)>;

  void hand(Change change) {
    {
      const std::scoped_lock lock(m_mutex);
      m_changes.push_back(std::move(change));
    }
    const std::uint64_t one = 1;
    EXPECT_EQ(::write(m_handed.get(), &one, sizeof one), ssize_t{sizeof one});
  }
  /// Makes the changes that were handed over; an empty one ends the loop.
  void take(EpollLoop& loop) {
    std::uint64_t count = 0;
    EXPECT_EQ(::read(m_handed.get(), &count, sizeof count), ssize_t{sizeof count});
    std::vector<Change> changes;
    {
      const std::scoped_lock lock(m_mutex);
      changes.swap(m_changes);
    }
    for (const Change& change : changes) {
      if (change) {
        change(m_states);
      } else {
        loop.quit();
      }
    }
  }
  void run(const std::string& address) {
    EpollLoop loop;
    SessionBus bus(loop, address);
    FakePreferencesStore preferences(loop);
    FakeLoginItem loginItem;
    const AppSettings settings(preferences, loginItem);
    const ResidentShell shell(
        loop, bus,
        ResidentSources{m_states.sampler, m_states.monitor, m_states.tracker, m_states.speedTest,
                        settings, preferences},
        {[this] { ++quits; }, [] {}, [this] { ++speedTests; }, [](const WindowRequest&) {}});
    const auto handed = loop.watch(m_handed.get(), EPOLLIN, [&](std::uint32_t) { take(loop); });
    loop.run();
  }

  States m_states; // the thread's, once it runs
  FileDescriptor m_handed{::eventfd(0, EFD_CLOEXEC)};
  std::mutex m_mutex;
  std::vector<Change> m_changes; // guarded by m_mutex
  std::thread m_thread;
};

} // namespace tidewell::test
