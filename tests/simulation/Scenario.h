#pragma once

#include "Simulation.h"

#include <functional>
#include <map>

namespace tidewell::test {

/// What befalls the program: outages, bad lines, failing tools, clocks that jump, preferences that
/// somebody changes, endings and beginnings, all at random times.
class Scenario {
public:
  explicit Scenario(Simulation& simulation);

  /// Lets so much virtual time pass, or less when a rule is broken.
  void play(Seconds span);

private:
  using Event = void (Scenario::*)();

  void happen();
  void later(Seconds delay, std::function<void()> event);
  [[nodiscard]] Event draw();

  // Of the line
  void outage();
  void flap();
  void repeatPath();
  void changeInterface();
  void changeRates();
  void breakCounters();
  void changeLine();
  void changeTools();
  void changeLookups();

  // Of the machine and its user
  void jumpClock();
  void correctClock();
  void changeSetting();
  void changeSettingElsewhere();
  void hurry();
  void askForSpeedTest();
  void endAndBegin();
  void terminate();

  [[nodiscard]] PathReport path(bool isSatisfied);

  Simulation& m_world;
  Dice& m_dice;
  std::multimap<Ticks, std::function<void()>> m_later;
};

} // namespace tidewell::test
