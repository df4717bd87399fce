#include "CountedMemory.h"
#include "Scenario.h"

#include <string>

namespace tidewell::test {

namespace {

// Larger than any allocation other than another program's output.
constexpr std::size_t scarcePiece = 9000;

constexpr int commandRows[] = {6, 6, 6, 7, 8, 9, 10};
constexpr int quitRow = 12;

} // namespace

void Scenario::changeBus() {
  SimulatedBus& bus = m_world.bus;
  switch (m_dice.below(3)) {
  case 0:
    bus.goDown();
    later(m_dice.magnitude(0.001, 3600.0), [&bus] { bus.comeUp(); });
    return;
  case 1:
    bus.setHanging(true);
    later(m_dice.magnitude(0.01, 60.0), [&bus] { bus.setHanging(false); });
    return;
  default:
    bus.goDown();
    bus.comeUp();
    bus.hasOtherInstance = m_dice.chance(0.1);
    later(m_dice.magnitude(0.1, 100.0), [&bus] { bus.hasOtherInstance = false; });
  }
}

void Scenario::changePanel() {
  PanelHost& host = m_world.host;
  const int refusals = m_dice.oneOf({0, 0, 0, 1, 5});
  host.setManner(refusals, m_dice.oneOf({0.0, 0.0, 0.0, 0.5, 20.0}));
  switch (m_dice.below(4)) {
  case 0:
    host.end();
    later(m_dice.magnitude(0.001, 3600.0), [&host] { host.start(); });
    return;
  case 1:
    host.end();
    return host.start();
  case 2:
    return host.announceHost();
  default:
    return host.start();
  }
}

void Scenario::changeNoticeServer() {
  using Manner = NoticeServer::Manner;
  NoticeServer& server = m_world.noticeServer;
  server.playsSounds = m_dice.chance(0.3);
  server.setInhibited(m_dice.chance(0.4));
  server.setManner(m_dice.oneOf({Manner::answers, Manner::answers, Manner::answers, Manner::refuses,
                                 Manner::hangs, Manner::talksNonsense}));
  if (m_dice.chance(0.5)) {
    server.end();
    later(m_dice.magnitude(0.001, 3600.0), [&server] { server.start(); });
  } else if (m_dice.chance(0.3)) {
    server.start();
  }
}

void Scenario::changeWindows() {
  WindowsProgram& windows = m_world.windows;
  windows.crashes = m_dice.oneOf({0.0, 0.0, 0.1, 0.5, 1.0});
  windows.hangs = m_dice.oneOf({0.0, 0.0, 0.1, 0.5});
  windows.lies = m_dice.oneOf({0.0, 0.0, 0.0, 0.2});
  windows.cannotStart = m_dice.oneOf({0.0, 0.0, 0.0, 0.3, 1.0});
}

/// The user clicks, once or repeatedly.
void Scenario::useItem() {
  PanelHost& host = m_world.host;
  if (!host.hasItem() || !m_world.isMade()) {
    return;
  }
  host.openMenu();
  Seconds delay = 0.0;
  for (auto clicks = m_dice.oneOf({1, 1, 1, 2, 30}); clicks > 0; --clicks) {
    delay += m_dice.magnitude(0.05, 3.0);
    later(delay, [this, &host] {
      if (!host.hasItem()) {
        return;
      }
      if (m_dice.chance(0.5)) {
        const auto x = static_cast<int>(m_dice.below(4000));
        host.activate(x, 3, m_dice.oneOf<std::string>({"", "token-1", std::string(300, 't')}));
      } else {
        host.chooseRow(m_dice.chance(0.01) ? quitRow
                                           : commandRows[m_dice.below(std::size(commandRows))]);
      }
    });
  }
}

void Scenario::useBus() {
  m_world.reader.ask(m_dice.chance(0.02) ? "Quit"
                                         : m_dice.oneOf({"OpenPanel", "OpenDetail", "OpenSettings",
                                                         "RunSpeedTest"}));
}

bool Scenario::isToolRunning() const {
  return m_world.processes.count() > (m_world.windows.isRunning() ? 1U : 0U);
}

void Scenario::changeMemory() {
  if (isToolRunning()) { // the result of its run is decided already
    return later(0.1, [this] { changeMemory(); });
  }
  if (CountedMemory::isScarce()) {
    CountedMemory::makePlenty();
  } else {
    CountedMemory::makeScarce(m_world.machine.scheduler, scarcePiece);
    later(m_dice.magnitude(10.0, 10'000.0), [this] { changeMemory(); });
  }
}

} // namespace tidewell::test
