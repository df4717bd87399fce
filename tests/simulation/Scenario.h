#pragma once

#include "Census.h"
#include "Simulation.h"

#include <functional>
#include <map>

namespace tidewell::test {

/// The events in the program's life: outages, bad lines, failing tools, clock jumps, changed
/// preferences, restarts, all at random times.
class Scenario {
public:
  explicit Scenario(Simulation& simulation);

  /// Prints each event to standard output from now on.
  void trace() { m_isTracing = true; }

  /// Lets this much virtual time pass, or less if a rule is broken. Restarts happen in the first
  /// half only; the last program lives through the second.
  void play(Seconds span);

  [[nodiscard]] int censuses() const { return m_census.taken(); }

private:
  struct Event {
    int weight;
    const char* name;
    void (Scenario::*happen)();
  };

  void live(Ticks end);
  void calmDown();
  void happen();
  void later(Seconds delay, std::function<void()> event);
  [[nodiscard]] const Event& draw();

  // The line
  void outage();
  void flap();
  void repeatPath();
  void closeLid();
  void portal();
  void roam();
  void changeInterface();
  void changeRates();
  void breakCounters();
  void changeLine();
  void changeTools();
  void changeLookups();

  // The machine and its user
  void jumpClock();
  void correctClock();
  void changeSetting();
  void changeSettingElsewhere();
  void fillDisk();
  void hurry();
  void askForSpeedTest();
  void endAndBegin();
  void terminate();

  // The desktop
  void changeBus();
  void changePanel();
  void changeNoticeServer();
  void changeWindows();
  void useItem();
  void useBus();
  void changeMemory();
  [[nodiscard]] bool isToolRunning() const;
  void awaitTools();

  [[nodiscard]] PathReport path(bool isSatisfied);
  void changePath(bool isSatisfied);

  Simulation& m_world;
  Dice& m_dice;
  bool m_isTracing = false;
  bool m_mayEnd = true;
  Ticks m_next = Ticks::zero(); // the time of the next event
  Census m_census;
  std::multimap<Ticks, std::function<void()>> m_later;
};

} // namespace tidewell::test
