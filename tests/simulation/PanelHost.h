#pragma once

#include "Dice.h"
#include "Findings.h"
#include "SimulatedBus.h"
#include "app/ItemHost.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>

namespace tidewell::test {

/// All texts that the item may show.
struct ExpectedItem {
  std::string label;
  std::string tipTitle;
  std::string tipBody;
  bool isTestingSpeed = false;
};

/// A desktop's watcher and host: takes the program's item, stores its properties, reads again what
/// a signal announces, and opens its menu. It must always show the current values.
class PanelHost {
public:
  PanelHost(SimulatedBus& bus, EventLoop& world, Dice& dice, Findings& findings);

  /// A panel of a known desktop takes the watcher's name, replacing another.
  void start();
  /// The panel ends.
  void end();
  /// Refuses this many registrations, and delays its replies.
  void setManner(int refusals, Seconds answersAfter);
  /// The program ends; calls in progress need no reply.
  void release() { lose(); }
  /// Announces a host again, as watchers do, while the item is taken.
  void announceHost();

  /// Whether the item is taken.
  [[nodiscard]] bool hasItem() const { return m_isTaken; }
  [[nodiscard]] bool isThere() const { return m_isThere; }
  [[nodiscard]] bool tellsPlace() const { return m_desktop->tellsPlace; }
  /// Whether it has run and accepted items for this long.
  [[nodiscard]] bool hasBeenWillingFor(Ticks span) const;
  /// When the item was last taken or lost.
  [[nodiscard]] Ticks changedAt() const { return m_changedAt; }

  /// The user's actions.
  void openMenu();
  void chooseRow(int row);
  void activate(int x, int y, const std::string& token);

  /// Compares what is shown with what is expected.
  void check(const ExpectedItem& item);

  [[nodiscard]] int takings() const { return m_takings; }
  [[nodiscard]] int menus() const { return m_menus; }

private:
  struct Desktop {
    const char* process;
    ItemPresentation presentation;
    bool tellsPlace;
  };
  static const std::array<Desktop, 6> desktops;

  void called(sd_bus_message& call);
  void takeItem();
  void lose();
  void heard(sd_bus_message& signal);
  void read(const char* property);
  void keep(const std::string& property, sd_bus_message& reply);
  void keepMenu(sd_bus_message& reply);
  void keepMenuChange(sd_bus_message& signal);
  void setTaken(bool isTaken);
  void checkMenu(const ExpectedItem& item);

  int m_refusals = 0;
  Seconds m_answersAfter = 0.0;
  Ticks m_willingSince = Ticks::zero();
  SimulatedBus& m_bus;
  EventLoop& m_world;
  Dice& m_dice;
  Findings& m_findings;
  const Desktop* m_desktop;
  bool m_isThere = false;
  bool m_isTaken = false;
  int m_life = 0; // changes with the watcher and the connection
  Ticks m_changedAt = Ticks::zero();
  std::map<std::string, std::string> m_shown;
  int m_pictures = 0;
  std::map<std::int32_t, std::string> m_menu;
  const Desktop* m_adaptedTo = nullptr; // by this life of the program
  bool m_hasToTell = false;             // the item must announce its new appearance
  bool m_hasTold = false;
  int m_hangs = 0;    // of the bus, when the panel came
  int m_newIcons = 0; // received since an item was last taken
  int m_owner = 10;
  int m_takings = 0;
  int m_menus = 0;
};

} // namespace tidewell::test
