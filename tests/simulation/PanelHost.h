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

/// The texts of which the item shows some.
struct ExpectedItem {
  std::string label;
  std::string tipTitle;
  std::string tipBody;
  bool isTestingSpeed = false;
};

/// A desktop's watcher and host: takes the program's item, keeps of it what it was told, reads
/// again what a signal says is new, and opens its menu. What it shows must be what there is to
/// show.
class PanelHost {
public:
  PanelHost(SimulatedBus& bus, EventLoop& world, Dice& dice, Findings& findings);

  /// A panel of one of the known desktops takes the watcher's name, in place of another.
  void start();
  /// It is gone.
  void end();
  /// Refuses so many registrations, and answers them later.
  void setManner(int refusals, Seconds answersAfter);
  /// The program ends: what it does not answer any more is no fault.
  void release() { lose(); }
  /// Announces a host, as watchers do, though the item is taken already.
  void announceHost();

  /// Whether the item is taken.
  [[nodiscard]] bool hasItem() const { return m_isTaken; }
  [[nodiscard]] bool isThere() const { return m_isThere; }
  [[nodiscard]] bool tellsPlace() const { return m_desktop->tellsPlace; }
  /// Whether it has been there and willing to take an item for so long.
  [[nodiscard]] bool hasBeenWillingFor(Ticks span) const;
  /// When the item was taken or lost last.
  [[nodiscard]] Ticks changedAt() const { return m_changedAt; }

  /// What the user does.
  void openMenu();
  void chooseRow(int row);
  void activate(int x, int y, const std::string& token);

  /// Holds what is shown against what there is.
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
  int m_life = 0; // of the watcher and of the connection
  Ticks m_changedAt = Ticks::zero();
  std::map<std::string, std::string> m_shown;
  int m_pictures = 0;
  std::map<std::int32_t, std::string> m_menu;
  const Desktop* m_adaptedTo = nullptr; // by this life of the program
  bool m_hasToTell = false;             // that it looks different now
  bool m_hasTold = false;
  int m_hangs = 0;    // of the bus, when the panel came
  int m_newIcons = 0; // heard since an item was taken last
  int m_owner = 10;
  int m_takings = 0;
  int m_menus = 0;
};

} // namespace tidewell::test
