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

#include <QTimer>

#include <string>
#include <utility>

namespace tidewell::test {

/// The resident's own face on a bus, over states that a test writes. Qt's event loop runs the
/// resident's loop for a millisecond at a time.
class ResidentInQt {
public:
  explicit ResidentInQt(std::string address) : m_bus(m_loop, std::move(address)) {
    m_turns.callOnTimeout([this] {
      const auto end = m_loop.repeat(0.001, 0.0, [this] { m_loop.quit(); });
      m_loop.run();
    });
    m_turns.start(0);
  }

  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  int quits = 0;
  int speedTests = 0;

private:
  EpollLoop m_loop;
  SessionBus m_bus;
  FakePreferencesStore m_preferences{m_loop};
  FakeLoginItem m_loginItem;
  AppSettings m_settings{m_preferences, m_loginItem};
  ResidentShell m_shell{
      m_loop,
      m_bus,
      {sampler, monitor, tracker, speedTest, m_settings, m_preferences},
      {[this] { ++quits; }, [] {}, [this] { ++speedTests; }, [](const WindowRequest&) {}}};
  QTimer m_turns;
};

} // namespace tidewell::test
