#include "Scenario.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <limits>
#include <string>

namespace tidewell::test {

namespace {

constexpr double usualStart = 1'700'000'000.0;
constexpr double year = 365.25 * 86400.0;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

constexpr std::array<const char*, 7> keys = {
    "refreshInterval",   "trackPerProcess",     "slowSpeedThreshold", "highLatencyThreshold",
    "showNotifications", "showUploadInMenubar", "dataRetentionDays"};

} // namespace

void Scenario::jumpClock() {
  auto& clock = m_world.machine.clock;
  const double by = m_dice.oneOf({0.25, 2.0, 30.0, 60.0, 3600.0, 86400.0, 5.0 * year});
  clock.jump(m_dice.chance(0.5) ? by : -by);
  if (m_dice.chance(0.05)) {
    clock.jump(m_dice.oneOf({-5.0, 0.0, 5.0}) -
               clock.now()); // a machine whose clock has no battery
  }
  if (m_dice.chance(0.7)) {
    later(m_dice.magnitude(1.0, 600.0), [this] { correctClock(); });
  }
}

void Scenario::correctClock() {
  auto& machine = m_world.machine;
  const double since = std::chrono::duration<double>(machine.scheduler.now()).count();
  machine.clock.jump(usualStart + since - machine.clock.now());
}

void Scenario::changeSetting() {
  switch (m_dice.below(6)) {
  case 0:
    return m_world.prefer("refreshInterval", m_dice.oneOf({1.0, 2.0, 2.0, 5.0, 5.0, 10.0, 10.0}));
  case 1:
    return m_world.prefer("trackPerProcess", m_dice.chance(0.25));
  case 2:
    return m_world.prefer("slowSpeedThreshold", m_dice.oneOf({0.0, 0.5, 1.0, 10.0, 100.0}));
  case 3:
    return m_world.prefer("highLatencyThreshold", m_dice.oneOf({20.0, 50.0, 100.0, 500.0}));
  case 4:
    return m_world.prefer("showNotifications", m_dice.chance(0.8));
  default:
    return m_world.prefer("showUploadInMenubar", m_dice.chance(0.5));
  }
}

/// Another program or an editor writes values that no window offers.
void Scenario::changeSettingElsewhere() {
  PreferencesModel& file = m_world.preferences;
  const char* const key = keys[m_dice.below(keys.size())];
  if (m_dice.chance(0.1)) {
    return m_dice.chance(0.2) ? file.remove() : file.writeElsewhere(key, std::nullopt);
  }
  if (m_dice.chance(0.2)) {
    return file.spoil();
  }
  file.writeElsewhere(
      key, m_dice.oneOf<PreferenceValue>({true, false, std::int64_t{0}, std::int64_t{-1},
                                          std::int64_t{7}, 0.0, -0.0, -1.0, 3.3, 1e300, nan,
                                          infinity, -infinity, std::string("often")}));
  later(m_dice.magnitude(0.5, 7200.0), [this] { changeSetting(); });
  later(m_dice.magnitude(0.5, 7200.0), [this] {
    m_world.prefer("refreshInterval", m_dice.oneOf({2.0, 5.0, 10.0}));
  });
}

void Scenario::fillDisk() {
  m_world.isDiskFull = true;
  changeSetting();
  later(m_dice.magnitude(1.0, 3600.0), [this] { m_world.isDiskFull = false; });
}

/// The shortest intervals, for a while.
void Scenario::hurry() {
  m_world.prefer("refreshInterval", m_dice.oneOf({0.5, 0.1, 0.003, 1e-3, 1e-9, 5e-324}));
  later(m_dice.between(0.1, 4.0), [this] {
    m_world.prefer("refreshInterval", m_dice.oneOf({2.0, 5.0, 10.0}));
  });
}

void Scenario::askForSpeedTest() {
  m_world.askForSpeedTest();
  if (m_dice.chance(0.3)) {
    later(m_dice.between(0.0, 60.0), [this] { m_world.askForSpeedTest(); });
  }
}

void Scenario::endAndBegin() {
  if (!m_mayEnd) {
    return;
  }
  m_world.destroy();
  const Seconds pause = m_dice.magnitude(0.001, 600.0);
  const Seconds launch = pause + m_dice.oneOf({0.0, 0.0, m_dice.magnitude(0.001, 10.0)});
  later(pause, [this] {
    if (!m_world.isMade()) {
      m_world.make();
    }
  });
  later(launch, [this] {
    if (m_world.isMade() && !m_world.isLaunched()) {
      m_world.launch();
    }
  });
}

void Scenario::terminate() {
  if (!m_mayEnd) {
    return;
  }
  m_world.terminate();
  later(m_dice.magnitude(0.001, 600.0), [this] { endAndBegin(); });
}

} // namespace tidewell::test
