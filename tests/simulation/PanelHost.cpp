#include "PanelHost.h"

#include "format/SteadyLabel.h"

#include <memory>
#include <string_view>
#include <utility>

#include <pthread.h>

namespace tidewell::test {

namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuPath = "/MenuBar";
constexpr const char* menuInterface = "com.canonical.dbusmenu";

constexpr std::int32_t speedTestRow = 9;

/// Counts the pictures of an array, each of which must have as many bytes as it declares.
int countPictures(sd_bus_message& reply, Findings& findings) {
  int count = 0;
  sd_bus_message_enter_container(&reply, 'a', "(iiay)");
  while (sd_bus_message_enter_container(&reply, 'r', "iiay") > 0) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    const void* bytes = nullptr;
    std::size_t size = 0;
    sd_bus_message_read(&reply, "ii", &width, &height);
    sd_bus_message_read_array(&reply, 'y', &bytes, &size);
    sd_bus_message_exit_container(&reply);
    findings.require(width > 0 && height > 0 &&
                         size ==
                             static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4,
                     "a picture's size", width, height, size);
    ++count;
  }
  return count;
}

} // namespace

const std::array<PanelHost::Desktop, 6> PanelHost::desktops = {{
    {"gnome-shell", ItemPresentation::label, true},
    {"mate-indicator-", ItemPresentation::label, true},
    {"notification-ar", ItemPresentation::label, false},
    {"waybar", ItemPresentation::widePicture, true},
    {"xfce4-panel", ItemPresentation::squareTile, true},
    {"some-other-bar", ItemPresentation::squareTile, true},
}};

PanelHost::PanelHost(SimulatedBus& bus, EventLoop& world, Dice& dice, Findings& findings)
    : m_bus(bus), m_world(world), m_dice(dice), m_findings(findings), m_desktop(&desktops[0]) {
  bus.serve(
      watcherName, [this](sd_bus_message& call) { called(call); }, [this] { lose(); });
  bus.listen([this](sd_bus_message& signal) { heard(signal); });
}

void PanelHost::start() {
  m_desktop = &desktops.at(m_dice.below(desktops.size()));
  // The program reads the name of the watcher's process, which is this one.
  ::pthread_setname_np(::pthread_self(), m_desktop->process);
  m_isThere = true;
  m_willingSince = m_bus.now();
  ++m_life;
  m_hangs = m_bus.isHanging() ? -1 : m_bus.hangs();
  setTaken(false);
  m_bus.setOwner(watcherName, ":1." + std::to_string(++m_owner));
}

void PanelHost::setManner(int refusals, Seconds answersAfter) {
  m_refusals = refusals;
  m_answersAfter = answersAfter;
  m_willingSince = m_bus.now();
}

bool PanelHost::hasBeenWillingFor(Ticks span) const {
  return m_isThere && m_refusals == 0 && m_bus.now() - m_willingSince > span;
}

void PanelHost::end() {
  m_isThere = false;
  ++m_life;
  setTaken(false);
  m_bus.setOwner(watcherName, "");
}

void PanelHost::announceHost() {
  m_bus.emit("/StatusNotifierWatcher", watcherName, "StatusNotifierHostRegistered");
}

void PanelHost::lose() {
  ++m_life;
  m_adaptedTo = nullptr;
  setTaken(false);
}

void PanelHost::setTaken(bool isTaken) {
  if (std::exchange(m_isTaken, isTaken) != isTaken) {
    m_changedAt = m_bus.now();
  }
  if (!isTaken) {
    m_shown.clear();
    m_menu.clear();
  }
}

void PanelHost::called(sd_bus_message& call) {
  const bool isRegistration =
      sd_bus_message_is_method_call(&call, watcherName, "RegisterStatusNotifierItem") > 0;
  m_findings.require(isRegistration && nextText(call) == ":1.1", "a call of the watcher");
  if (!m_isThere || m_refusals > 0) {
    m_refusals -= m_refusals > 0 ? 1 : 0;
    m_willingSince = m_bus.now();
    sd_bus_reply_method_errorf(&call, "org.example.Refused", "%s", "not today");
    return;
  }
  if (m_answersAfter > 0.0) {
    const auto kept = std::shared_ptr<sd_bus_message>(
        sd_bus_message_ref(&call), [](auto* message) { sd_bus_message_unref(message); });
    m_world.postAfter(m_answersAfter, [this, kept, life = m_life] {
      if (life == m_life) {
        sd_bus_reply_method_return(kept.get(), "");
        takeItem();
      }
    });
    return;
  }
  sd_bus_reply_method_return(&call, "");
  takeItem();
}

void PanelHost::takeItem() {
  m_hasToTell = m_adaptedTo != nullptr && m_adaptedTo->presentation != m_desktop->presentation;
  m_hasTold = std::exchange(m_newIcons, 0) > 0;
  m_adaptedTo = m_desktop;
  ++m_takings;
  setTaken(true);
  for (const char* property : {"IconName", "IconPixmap", "IconAccessibleDesc", "XAyatanaLabel",
                               "XAyatanaLabelGuide", "ToolTip"}) {
    read(property);
  }
}

void PanelHost::read(const char* property) {
  m_bus.call(
      itemPath, propertiesInterface, "Get",
      [property](sd_bus_message& call) {
        sd_bus_message_append(&call, "ss", itemInterface, property);
      },
      [this, property = std::string(property), life = m_life](sd_bus_message* reply) {
        if (reply != nullptr && life == m_life) {
          m_findings.require(sd_bus_message_is_method_error(reply, nullptr) == 0,
                             "the item's property", property);
          keep(property, *reply);
        }
      });
}

void PanelHost::keep(const std::string& property, sd_bus_message& reply) {
  if (property == "IconPixmap") {
    sd_bus_message_enter_container(&reply, 'v', "a(iiay)");
    m_pictures = countPictures(reply, m_findings);
  } else if (property == "ToolTip") {
    sd_bus_message_enter_container(&reply, 'v', "(sa(iiay)ss)");
    sd_bus_message_enter_container(&reply, 'r', "sa(iiay)ss");
    sd_bus_message_skip(&reply, "sa(iiay)");
    m_shown["TipTitle"] = nextText(reply);
    m_shown["TipBody"] = nextText(reply);
  } else {
    sd_bus_message_enter_container(&reply, 'v', "s");
    m_shown[property] = nextText(reply);
  }
}

void PanelHost::heard(sd_bus_message& signal) {
  const std::string member = sd_bus_message_get_member(&signal);
  m_newIcons += member == "NewIcon" ? 1 : 0;
  if (!m_isTaken) {
    return;
  }
  if (member == "NewIcon") {
    for (const char* property : {"IconName", "IconPixmap", "IconAccessibleDesc"}) {
      read(property);
    }
    if (m_desktop->process == std::string_view("xfce4-panel")) {
      read("ToolTip"); // it reads everything at each announcement
    }
  } else if (member == "NewToolTip") {
    read("ToolTip");
  } else if (member == "XAyatanaNewLabel") {
    m_shown["XAyatanaLabel"] = nextText(signal);
    m_shown["XAyatanaLabelGuide"] = nextText(signal);
  } else if (member == "ItemsPropertiesUpdated" && !m_menu.empty()) {
    keepMenuChange(signal);
  }
}

void PanelHost::openMenu() {
  if (!m_isTaken) {
    return;
  }
  ++m_menus;
  m_bus.call(
      menuPath, menuInterface, "GetLayout",
      [](sd_bus_message& call) { sd_bus_message_append(&call, "iias", 0, -1, 0); },
      [this, life = m_life](sd_bus_message* reply) {
        if (reply != nullptr && life == m_life) {
          keepMenu(*reply);
        }
      });
}

void PanelHost::keepMenu(sd_bus_message& reply) {
  std::uint32_t revision = 0;
  std::int32_t id = 0;
  sd_bus_message_read(&reply, "u", &revision);
  sd_bus_message_enter_container(&reply, 'r', "ia{sv}av");
  sd_bus_message_read(&reply, "i", &id);
  sd_bus_message_skip(&reply, "a{sv}");
  sd_bus_message_enter_container(&reply, 'a', "v");
  while (sd_bus_message_enter_container(&reply, 'v', "(ia{sv}av)") > 0) {
    sd_bus_message_enter_container(&reply, 'r', "ia{sv}av");
    sd_bus_message_read(&reply, "i", &id);
    sd_bus_message_enter_container(&reply, 'a', "{sv}");
    while (sd_bus_message_enter_container(&reply, 'e', "sv") > 0) {
      if (nextText(reply) == "label") {
        sd_bus_message_enter_container(&reply, 'v', "s");
        m_menu[id] = nextText(reply);
        sd_bus_message_exit_container(&reply);
      } else {
        sd_bus_message_skip(&reply, "v");
      }
      sd_bus_message_exit_container(&reply);
    }
    sd_bus_message_exit_container(&reply);
    sd_bus_message_skip(&reply, "av");
    sd_bus_message_exit_container(&reply);
    sd_bus_message_exit_container(&reply);
  }
}

void PanelHost::keepMenuChange(sd_bus_message& signal) {
  sd_bus_message_enter_container(&signal, 'a', "(ia{sv})");
  while (sd_bus_message_enter_container(&signal, 'r', "ia{sv}") > 0) {
    std::int32_t id = 0;
    const char* label = nullptr;
    sd_bus_message_read(&signal, "i", &id);
    sd_bus_message_enter_container(&signal, 'a', "{sv}");
    while (sd_bus_message_read(&signal, "{sv}", nullptr, "s", &label) > 0) {
      m_menu[id] = label;
    }
    sd_bus_message_exit_container(&signal);
    sd_bus_message_exit_container(&signal);
  }
}

void PanelHost::chooseRow(int row) {
  m_bus.call(
      menuPath, menuInterface, "Event",
      [row](sd_bus_message& call) {
        sd_bus_message_append(&call, "isvu", row, "clicked", "i", 0, 0);
      },
      [](sd_bus_message*) {});
}

void PanelHost::activate(int x, int y, const std::string& token) {
  if (!token.empty()) {
    m_bus.call(
        itemPath, itemInterface, "ProvideXdgActivationToken",
        [&](sd_bus_message& call) { sd_bus_message_append(&call, "s", token.c_str()); },
        [](sd_bus_message*) {});
  }
  m_bus.call(
      itemPath, itemInterface, "Activate",
      [&](sd_bus_message& call) { sd_bus_message_append(&call, "ii", x, y); },
      [](sd_bus_message*) {});
}

void PanelHost::check(const ExpectedItem& item) {
  if (!m_isTaken || !m_bus.isServing() || m_bus.pending() > 0) {
    return;
  }
  const auto same = [&](const char* what, const std::string& expected) {
    m_findings.require(m_shown[what] == expected, "what the panel shows,", what, m_shown[what],
                       "instead of", expected, "in", m_desktop->process);
  };
  same("TipTitle", item.tipTitle);
  same("TipBody", item.tipBody);
  checkMenu(item);
  if (m_hangs != m_bus.hangs()) {
    return; // the query for the panel's process may be unanswered
  }
  m_findings.require(!m_hasToTell || m_hasTold,
                     "the item tells that it looks different to another kind of host");
  const bool isLabelled = m_desktop->presentation == ItemPresentation::label;
  if (isLabelled) {
    same("XAyatanaLabel", steadyLabel(item.label));
  } else {
    same("IconAccessibleDesc", item.label);
  }
  same("IconName", isLabelled ? "network-transmit-receive" : "");
  const int pictures = m_desktop->presentation == ItemPresentation::squareTile    ? 2
                       : m_desktop->presentation == ItemPresentation::widePicture ? 1
                                                                                  : 0;
  m_findings.require(m_pictures == pictures, "the item's pictures", m_pictures, "instead of",
                     pictures, "in", m_desktop->process);
}

void PanelHost::checkMenu(const ExpectedItem& item) {
  if (m_menu.empty()) {
    return;
  }
  std::string rows;
  for (const std::int32_t row : {2, 3, 4}) {
    rows += (rows.empty() ? "" : "\n") + m_menu[row];
  }
  m_findings.require("Tidewell: " + m_menu[1] == item.tipTitle && rows == item.tipBody,
                     "the menu's texts", m_menu[1], rows, "instead of", item.tipTitle,
                     item.tipBody);
  const std::string test = item.isTestingSpeed ? "Testing..." : "Speed Test";
  m_findings.require(m_menu[speedTestRow] == test, "the menu's speed test", m_menu[speedTestRow]);
}

} // namespace tidewell::test
