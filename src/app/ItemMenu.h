#pragma once

#include "base/Observers.h"
#include "platform/linux/bus/BusObject.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tidewell {

class SessionBus;

/// One row of the item's menu.
struct MenuRow {
  enum class Kind { text, separator, command };

  Kind kind = Kind::text;
  std::string label;
  /// What a command does.
  std::function<void()> chosen;
};

/// The item's menu, as a com.canonical.dbusmenu: a flat list of rows whose labels may change while
/// it is open. Main thread.
class ItemMenu {
public:
  /// Borrows the bus. The number and kinds of rows never change.
  ItemMenu(SessionBus& bus, std::string path, std::vector<MenuRow> rows);

  /// Replaces the label of the row at this index and, if somebody has looked at the menu, tells
  /// them soon (`announce`).
  void setLabel(std::size_t index, const std::string& label);

  /// Tells whoever has looked at the menu of the labels that changed.
  void announce();

private:
  void describe();
  [[nodiscard]] const MenuRow* row(std::int32_t id) const;
  void choose(std::int32_t id, const std::string& event);
  int appendItem(sd_bus_message& message, std::int32_t id, std::int32_t depth) const;
  int appendProperties(sd_bus_message& message, std::int32_t id) const;
  int answerLayout(sd_bus_message& call, sd_bus_message& reply);
  int answerGroup(sd_bus_message& call, sd_bus_message& reply);
  int answerProperty(sd_bus_message& call, sd_bus_message& reply) const;
  int answerEvent(sd_bus_message& call);
  int answerEventGroup(sd_bus_message& call, sd_bus_message& reply);

  std::vector<MenuRow> m_rows;
  BusObject m_object;
  bool m_wasSeen = false;
  std::vector<std::int32_t> m_changed;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
