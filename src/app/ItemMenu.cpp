#include "app/ItemMenu.h"

#include "platform/linux/bus/SessionBus.h"

#include <cerrno>
#include <string_view>
#include <utility>

namespace tidewell {
namespace {

constexpr const char* menuInterface = "com.canonical.dbusmenu";
// The protocol reserves names that begin with "x-" for programs.
constexpr const char* actionProperty = "x-tidewell-action";
constexpr std::int32_t rootId = 0;

// Row n has the identifier n + 1; the layout never changes, so its revision does not either.
constexpr std::uint32_t layoutRevision = 1;

std::int32_t idOf(std::size_t index) { return static_cast<std::int32_t>(index) + 1; }

/// The identifiers in an "ai" argument, at most `most`: a message has room for millions, and an
/// answer to all of them would take gigabytes.
std::vector<std::int32_t> readIds(sd_bus_message& message, std::size_t most) {
  std::vector<std::int32_t> ids;
  std::int32_t id = 0;
  if (sd_bus_message_enter_container(&message, 'a', "i") > 0) {
    while (ids.size() < most && sd_bus_message_read(&message, "i", &id) > 0) {
      ids.push_back(id);
    }
  }
  return ids;
}

/// Underscores mark access keys in menus; doubled, they are plain.
std::string escaped(const std::string& label) {
  std::string text;
  for (const char letter : label) {
    text.append(letter == '_' ? 2 : 1, letter);
  }
  return text;
}

} // namespace

ItemMenu::ItemMenu(SessionBus& bus, std::string path, std::vector<MenuRow> rows)
    : m_rows(std::move(rows)), m_object(std::move(path), menuInterface) {
  refresh();
  describe();
  m_lost = bus.onLost([this] {
    m_object.disappear();
    m_wasRead = false;
  });
  m_connected = bus.onConnected([this](sd_bus& connection) { m_object.appear(connection); });
}

void ItemMenu::describe() {
  m_object.constant("Version", "u", std::uint32_t{3});
  m_object.constant("TextDirection", "s", "ltr");
  m_object.constant("Status", "s", "normal");
  m_object.silentProperty("IconThemePath", "as", [](sd_bus_message& reply) {
    return sd_bus_message_append(&reply, "as", 0);
  });
  m_object.method("GetLayout", "iias", "u(ia{sv}av)",
                  [this](auto& call, auto& reply) { return answerLayout(call, reply); });
  m_object.method("GetGroupProperties", "aias", "a(ia{sv})",
                  [this](auto& call, auto& reply) { return answerGroup(call, reply); });
  m_object.method("GetProperty", "is", "v",
                  [this](auto& call, auto& reply) { return answerProperty(call, reply); });
  m_object.method("Event", "isvu", "", [this](auto& call, auto&) { return answerEvent(call); });
  m_object.method("EventGroup", "a(isvu)", "ai",
                  [this](auto& call, auto& reply) { return answerEventGroup(call, reply); });
  // Labels are sent when they change, so a host need not read them again before the menu shows.
  m_object.method("AboutToShow", "i", "b", [this](auto&, sd_bus_message& reply) {
    refresh();
    return sd_bus_message_append(&reply, "b", 0);
  });
  m_object.method("AboutToShowGroup", "ai", "aiai", [this](auto&, sd_bus_message& reply) {
    refresh();
    return sd_bus_message_append(&reply, "aiai", 0, 0);
  });
  m_object.signal("ItemsPropertiesUpdated", "a(ia{sv})a(ias)");
  m_object.signal("LayoutUpdated", "ui");
  m_object.signal("ItemActivationRequested", "iu");
}

void ItemMenu::refresh() {
  std::vector<std::int32_t> changed;
  for (std::size_t index = 0; index < m_rows.size(); ++index) {
    MenuRow& row = m_rows[index];
    std::string label = row.label ? escaped(row.label()) : std::string();
    if (label != row.shown) {
      row.shown = std::move(label);
      changed.push_back(idOf(index));
    }
  }
  if (!m_wasRead || changed.empty()) {
    return;
  }
  m_object.emit("ItemsPropertiesUpdated", [&](sd_bus_message& signal) {
    BusWriter writer(signal);
    writer.open('a', "(ia{sv})");
    for (const std::int32_t id : changed) {
      writer.open('r', "ia{sv}").add("i", id);
      writer.add("a{sv}", 1, "label", "s", row(id)->shown.c_str()).close();
    }
    return writer.close().add("a(ias)", 0).result();
  });
}

const MenuRow* ItemMenu::row(std::int32_t id) const {
  const auto index = static_cast<std::size_t>(id) - 1;
  return id > rootId && index < m_rows.size() ? &m_rows[index] : nullptr;
}

void ItemMenu::choose(std::int32_t id, const std::string& event) {
  const MenuRow* const chosen = row(id);
  if (event == "clicked" && chosen != nullptr && chosen->chosen) {
    chosen->chosen();
  }
}

int ItemMenu::appendProperties(sd_bus_message& message, std::int32_t id) const {
  const MenuRow* const item = row(id);
  if (item == nullptr) {
    return sd_bus_message_append(&message, "a{sv}", 1, "children-display", "s", "submenu");
  }
  if (!item->label) {
    return sd_bus_message_append(&message, "a{sv}", 1, "type", "s", "separator");
  }
  if (item->action != nullptr) {
    return sd_bus_message_append(&message, "a{sv}", 2, "label", "s", item->shown.c_str(),
                                 actionProperty, "s", item->action);
  }
  if (item->chosen) {
    return sd_bus_message_append(&message, "a{sv}", 1, "label", "s", item->shown.c_str());
  }
  return sd_bus_message_append(&message, "a{sv}", 2, "label", "s", item->shown.c_str(), "enabled",
                               "b", 0);
}

int ItemMenu::appendItem(sd_bus_message& message, std::int32_t id, std::int32_t depth) const {
  BusWriter writer(message);
  writer.open('r', "ia{sv}av").add("i", id);
  writer.step([&] { return appendProperties(message, id); }).open('a', "v");
  if (id == rootId && depth != 0) {
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
      writer.open('v', "(ia{sv}av)");
      writer.step([&] { return appendItem(message, idOf(index), 0); }).close();
    }
  }
  return writer.close().close().result();
}

int ItemMenu::answerLayout(sd_bus_message& call, sd_bus_message& reply) {
  std::int32_t parent = 0;
  std::int32_t depth = 0;
  if (const int result = sd_bus_message_read(&call, "ii", &parent, &depth); result < 0) {
    return result;
  }
  if (parent != rootId && row(parent) == nullptr) {
    return -EINVAL;
  }
  m_wasRead = true;
  return BusWriter(reply)
      .add("u", layoutRevision)
      .step([&] { return appendItem(reply, parent, depth); })
      .result();
}

int ItemMenu::answerGroup(sd_bus_message& call, sd_bus_message& reply) {
  std::vector<std::int32_t> ids = readIds(call, m_rows.size() + 1);
  if (ids.empty()) {
    // By convention, an empty list asks for all rows.
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
      ids.push_back(idOf(index));
    }
  }
  m_wasRead = true;
  BusWriter writer(reply);
  writer.open('a', "(ia{sv})");
  for (const std::int32_t id : ids) {
    if (id == rootId || row(id) != nullptr) {
      writer.open('r', "ia{sv}").add("i", id);
      writer.step([&] { return appendProperties(reply, id); }).close();
    }
  }
  return writer.close().result();
}

int ItemMenu::answerProperty(sd_bus_message& call, sd_bus_message& reply) const {
  std::int32_t id = 0;
  const char* name = nullptr;
  if (const int result = sd_bus_message_read(&call, "is", &id, &name); result < 0) {
    return result;
  }
  const MenuRow* const item = row(id);
  if (item == nullptr) {
    return -EINVAL;
  }
  const std::string_view property(name);
  if (property == "label") {
    return sd_bus_message_append(&reply, "v", "s", item->shown.c_str());
  }
  if (property == "enabled") {
    return sd_bus_message_append(&reply, "v", "b", item->label && !item->chosen ? 0 : 1);
  }
  if (property == actionProperty && item->action != nullptr) {
    return sd_bus_message_append(&reply, "v", "s", item->action);
  }
  if (property == "visible") {
    return sd_bus_message_append(&reply, "v", "b", 1);
  }
  if (property == "type") {
    return sd_bus_message_append(&reply, "v", "s", item->label ? "standard" : "separator");
  }
  return -EINVAL;
}

int ItemMenu::answerEvent(sd_bus_message& call) {
  std::int32_t id = 0;
  const char* event = nullptr;
  if (const int result = sd_bus_message_read(&call, "is", &id, &event); result < 0) {
    return result;
  }
  choose(id, event);
  return 0;
}

int ItemMenu::answerEventGroup(sd_bus_message& call, sd_bus_message& reply) {
  std::vector<std::int32_t> unknown;
  int result = sd_bus_message_enter_container(&call, 'a', "(isvu)");
  while (result > 0 && (result = sd_bus_message_enter_container(&call, 'r', "isvu")) > 0) {
    std::int32_t id = 0;
    const char* event = nullptr;
    result = sd_bus_message_read(&call, "is", &id, &event);
    if (result < 0) {
      return result;
    }
    if (row(id) == nullptr) {
      unknown.push_back(id);
    }
    choose(id, event);
    sd_bus_message_skip(&call, "vu");
    result = sd_bus_message_exit_container(&call);
  }
  return result < 0 ? result
                    : sd_bus_message_append_array(&reply, 'i', unknown.data(),
                                                  unknown.size() * sizeof(std::int32_t));
}

} // namespace tidewell
