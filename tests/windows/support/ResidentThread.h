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

#include <atomic>
#include <functional>
#include <future>
#include <string>
#include <thread>

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
      : m_thread([this, address = std::move(address)] { run(address); }) {
    m_loop = m_ready.get_future().get();
  }
  ResidentThread(const ResidentThread&) = delete;
  ResidentThread& operator=(const ResidentThread&) = delete;
  ~ResidentThread() {
    m_loop->post([loop = m_loop] { loop->quit(); });
    m_thread.join();
  }

  /// Lets the resident publish something.
  void publish(std::function<void(States& states)> change) {
    m_loop->post([this, change = std::move(change)] { change(m_states); });
  }

  std::atomic<int> quits = 0;
  std::atomic<int> speedTests = 0;

private:
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
    m_ready.set_value(&loop);
    loop.run();
  }

  States m_states; // the thread's, once it runs
  std::promise<EventLoop*> m_ready;
  EventLoop* m_loop = nullptr;
  std::thread m_thread;
};

} // namespace tidewell::test
