#include "Scenario.h"

#include "CountedMemory.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>

namespace tidewell::test {

namespace {

constexpr Seconds meanPause = 300.0;

} // namespace

Scenario::Scenario(Simulation& simulation)
    : m_world(simulation), m_dice(simulation.dice), m_census(simulation.findings) {
  changeRates();
  m_world.host.start();
  m_world.noticeServer.start();
  m_world.make();
  m_world.launch();
}

void Scenario::play(Seconds span) {
  constexpr Seconds day = 86400.0;
  const Ticks begin = m_world.machine.scheduler.now();
  const Ticks end = begin + toTicks(span);
  Ticks evening = begin;
  while (evening < end && !m_world.findings.first()) {
    evening = std::min(evening + toTicks(day), end);
    m_mayEnd = evening - begin <= (end - begin) / 2 || span <= day;
    live(evening);
    if (!m_world.findings.first() && span > day) {
      calmDown();
      m_census.take(m_world);
    }
  }
}

void Scenario::live(Ticks end) {
  while (!m_world.findings.first()) {
    const Ticks now = m_world.machine.scheduler.now();
    if (now >= end) {
      return;
    }
    if (m_next <= now) {
      m_next = now + toTicks(m_dice.waiting(meanPause));
    }
    const Ticks until = std::min({m_next, end, m_later.empty() ? end : m_later.begin()->first});
    m_world.advance(std::chrono::duration<double>(until - now).count());
    if (m_world.isAskedToEnd()) {
      endAndBegin();
    }
    happen();
    if (m_world.machine.scheduler.now() >= m_next) {
      const Event& event = draw();
      if (m_isTracing) {
        std::printf("%.3f %s\n", std::chrono::duration<double>(m_next).count(), event.name);
        std::fflush(stdout);
      }
      (this->*event.happen)();
    }
  }
}

/// Everything works for a while and nobody requests anything.
void Scenario::calmDown() {
  m_later.clear();
  m_world.tools.conditions = {};
  m_world.calmDesktop();
  if (!m_world.isMade()) {
    m_world.make();
  }
  if (!m_world.isLaunched()) {
    m_world.launch();
  }
  m_world.isDiskFull = false;
  m_world.setSleeping(false);
  m_world.become({{true, false, true, false}, 2, "eth0", "abcd", "gate", {}, 0});
  m_world.preferences.remove();
  m_world.advance(1.0);
  m_world.prefer("refreshInterval", 2.0);
  m_world.prefer("trackPerProcess", false);
  awaitTools();
  CountedMemory::makePlenty();
  for (int step = 0; step < 30; ++step) {
    m_world.advance(100.0);
  }
  awaitTools(); // a running ping would count as growth
  m_world.forgetDesktop();
}

void Scenario::awaitTools() {
  while (isToolRunning()) {
    m_world.advance(0.1);
  }
}

void Scenario::happen() {
  while (!m_later.empty() && m_later.begin()->first <= m_world.machine.scheduler.now()) {
    const auto event = std::move(m_later.begin()->second);
    m_later.erase(m_later.begin());
    event();
  }
}

void Scenario::later(Seconds delay, std::function<void()> event) {
  m_later.emplace(m_world.machine.scheduler.now() + toTicks(delay), std::move(event));
}

const Scenario::Event& Scenario::draw() {
  static constexpr std::array<Event, 28> events = {{
      {12, "outage", &Scenario::outage},
      {4, "flap", &Scenario::flap},
      {3, "path repeated", &Scenario::repeatPath},
      {5, "lid closed", &Scenario::closeLid},
      {3, "portal", &Scenario::portal},
      {5, "another network", &Scenario::roam},
      {6, "interface", &Scenario::changeInterface},
      {14, "rates", &Scenario::changeRates},
      {4, "counters", &Scenario::breakCounters},
      {14, "line", &Scenario::changeLine},
      {6, "tools", &Scenario::changeTools},
      {4, "lookups", &Scenario::changeLookups},
      {5, "clock jumps", &Scenario::jumpClock},
      {4, "clock is set", &Scenario::correctClock},
      {6, "setting", &Scenario::changeSetting},
      {8, "setting by another", &Scenario::changeSettingElsewhere},
      {4, "full disk", &Scenario::fillDisk},
      {2, "hurry", &Scenario::hurry},
      {4, "speed test", &Scenario::askForSpeedTest},
      {1, "end and begin", &Scenario::endAndBegin},
      {1, "terminate", &Scenario::terminate},
      {3, "bus", &Scenario::changeBus},
      {5, "panel", &Scenario::changePanel},
      {4, "notification server", &Scenario::changeNoticeServer},
      {3, "windows", &Scenario::changeWindows},
      {12, "item", &Scenario::useItem},
      {6, "bus interface", &Scenario::useBus},
      {3, "memory", &Scenario::changeMemory},
  }};
  int sum = 0;
  for (const Event& event : events) {
    sum += event.weight;
  }
  auto ticket = static_cast<int>(m_dice.below(static_cast<std::size_t>(sum)));
  for (const Event& event : events) {
    ticket -= event.weight;
    if (ticket < 0) {
      return event;
    }
  }
  return events.front();
}

PathReport Scenario::path(bool isSatisfied) {
  return {isSatisfied, m_dice.chance(0.5), m_dice.chance(0.5), m_dice.chance(0.2)};
}

void Scenario::changePath(bool isSatisfied) {
  ObservedPath changed = m_world.path();
  changed.report = path(isSatisfied);
  m_world.become(changed);
}

void Scenario::outage() {
  changePath(false);
  later(m_dice.magnitude(0.01, 3600.0), [this] { changePath(true); });
}

/// Managers take the link down before the machine sleeps, drivers lose it after waking. Virtual
/// time is the monotonic clock, which stands still meanwhile.
void Scenario::closeLid() {
  m_world.setSleeping(true);
  const Seconds awake = m_dice.magnitude(0.01, 20.0);
  if (m_dice.chance(0.7)) {
    later(m_dice.between(0.0, awake), [this] { changePath(false); });
  }
  later(awake, [this] {
    m_world.machine.clock.jump(m_dice.magnitude(1.0, 1e6));
    if (m_dice.chance(0.9)) {
      m_world.setSleeping(false);
    }
    if (m_dice.chance(0.5)) {
      later(m_dice.between(0.0, 3.0), [this] { changePath(false); });
    }
    later(m_dice.magnitude(0.1, 60.0), [this] { changePath(true); });
  });
}

void Scenario::portal() {
  m_world.tools.conditions.body = m_dice.oneOf<const char*>({"<html>", "203.0.113.7.", ""});
  roam();
  later(m_dice.magnitude(1.0, 3600.0), [this] { m_world.tools.conditions.body = "203.0.113.7\n"; });
}

/// Another gateway, other DNS servers, or both.
void Scenario::roam() {
  ObservedPath there = m_world.path();
  const int what = m_dice.oneOf({1, 2, 3});
  if ((what & 1) != 0) {
    there.gateway = m_dice.oneOf({"gate", "door", ""});
  }
  if ((what & 2) != 0) {
    const std::string server = m_dice.oneOf({"9.9.9.9", "192.168.1.1", "fd00::1"});
    there.dnsServers = {server};
    m_world.machine.configuration.servers = there.dnsServers;
  }
  m_world.become(there);
}

void Scenario::flap() {
  Seconds delay = 0.0;
  bool isSatisfied = m_dice.chance(0.5);
  for (auto times = 2 + 2 * m_dice.below(10); times > 0; --times) {
    delay += m_dice.magnitude(0.001, 5.0);
    isSatisfied = !isSatisfied;
    later(delay, [this, isSatisfied] { changePath(isSatisfied); });
  }
}

void Scenario::repeatPath() {
  const PathReport same = path(m_dice.chance(0.8));
  m_world.report(same);
  m_world.report(same);
}

void Scenario::changeInterface() {
  auto& primary = m_world.machine.configuration.primary;
  const auto name = m_dice.oneOf<const char*>({"eth0", "wlan0", "tun0", "en0", "", nullptr});
  primary = name == nullptr ? std::nullopt : std::optional<std::string>(name);
  if (m_dice.chance(0.2)) {
    m_world.traffic.remove("wlan0");
  }
  changeRates();
}

void Scenario::changeRates() {
  const auto rate = [this] {
    return m_dice.oneOf({0.0, 600.0, 1250.0, 1251.0, 20e3, 124e3, 1.24e6, 1.25e6, 30e6, 1.25e9,
                         m_dice.magnitude(1.0, 1e9)});
  };
  const std::string name = m_dice.oneOf({"eth0", "eth0", "wlan0", "en0", "tun0"});
  const double in = rate();
  const double out = rate();
  m_world.traffic.setRates(name, in, out);
}

void Scenario::breakCounters() {
  const auto count = [this] {
    return m_dice.oneOf<std::int64_t>({0, 200, 4'294'967'000, 1'000'000'000'000, -1'000});
  };
  const auto in = count();
  const auto out = count();
  m_world.traffic.setCounts(m_dice.oneOf({"eth0", "wlan0"}), {in, out});
}

void Scenario::changeLine() {
  Conditions& line = m_world.tools.conditions;
  line.latencyMs = m_dice.oneOf({2.0, 12.0, 12.0, 49.0, 60.0, 101.0, 180.0, 900.0});
  line.spreadMs = line.latencyMs * m_dice.oneOf({0.0, 0.1, 0.9});
  line.loss = m_dice.oneOf({0.0, 0.0, 0.0, 0.05, 0.3, 0.6, 1.0});
}

void Scenario::changeTools() {
  Conditions& tools = m_world.tools.conditions;
  tools.garbage = m_dice.oneOf({0.0, 0.0, 0.02, 0.5});
  tools.cannotStart = m_dice.oneOf({0.0, 0.0, 0.02, 1.0});
  tools.hangs = m_dice.oneOf({0.0, 0.0, 0.02, 0.2});
  tools.floods = m_dice.oneOf({0.0, 0.0, 0.02, 0.3});
}

void Scenario::changeLookups() {
  Conditions& tools = m_world.tools.conditions;
  tools.lookupSeconds = m_dice.oneOf({0.0, 0.05, 1.0, 2.999, 3.0, 60.0});
  tools.body = m_dice.chance(0.3) ? std::nullopt
                                  : std::optional<std::string>(m_dice.oneOf(
                                        {"203.0.113.7\n", "", "\xFF\xFE", " <html> \r\n"}));
  m_world.machine.addresses.interfaces["eth0"] = "192.0.2.7";
}

} // namespace tidewell::test
