#pragma once

#include "base/Observers.h"
#include "platform/linux/bus/BusObject.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

class SessionBus;

/// One row of the item's menu.
struct MenuRow {
  /// A text that cannot be chosen.
  static MenuRow text(std::function<std::string()> label) {
    return {std::move(label), {}, {}, nullptr};
  }
  static MenuRow separator() { return {}; }
  static MenuRow command(std::function<std::string()> label, std::function<void()> chosen) {
    return {std::move(label), std::move(chosen), {}, nullptr};
  }
  static MenuRow command(const char* label, std::function<void()> chosen) {
    return command([label] { return label; }, std::move(chosen));
  }

  /// Names the row, for programs that act on it themselves. Labels depend on the language.
  MenuRow&& named(const char* name) && {
    action = name;
    return std::move(*this);
  }

  std::function<std::string()> label; // empty for a separator
  std::function<void()> chosen;       // empty for all but a command
  std::string shown;                  // the label read last, as it is sent
  const char* action = nullptr;       // the row's name, if it has one
};

/// The item's menu, as a com.canonical.dbusmenu: a flat list of rows whose labels may change while
/// it is open.
class ItemMenu {
public:
  /// Borrows the bus. Neither the number nor the kinds of the rows change.
  ItemMenu(SessionBus& bus, std::string path, std::vector<MenuRow> rows);

  /// Reads the labels, and sends those that changed if anybody has read the menu before.
  void refresh();

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
  bool m_wasRead = false;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
