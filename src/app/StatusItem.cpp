#include "app/StatusItem.h"

#include "format/SteadyLabel.h"
#include "platform/linux/bus/SessionBus.h"
#include "tile/TextTile.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell {
namespace {

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";

// Hosts that show labels show a placeholder if there is no icon.
constexpr const char* themeIcon = "network-transmit-receive";

constexpr const char* title = "Tidewell";

int appendNoPictures(sd_bus_message& message) {
  return sd_bus_message_append(&message, "a(iiay)", 0);
}

} // namespace

StatusItem::StatusItem(SessionBus& bus, std::function<void(const WindowRequest& request)> ask)
    : m_object(itemPath, itemInterface), m_ask(std::move(ask)), m_readers([this] { adapt(); }),
      m_scheme(bus, [this] { announceGround(); }) {
  describeIdentity();
  describeAppearance();
  describeMethods();
  m_lost = bus.onLost([this] {
    m_readers.forget();
    m_object.disappear();
  });
  m_connected = bus.onConnected([this](sd_bus& connection) { m_object.appear(connection); });
}

void StatusItem::describeIdentity() {
  m_object.constant("Category", "s", "SystemServices");
  m_object.constant("Id", "s", "tidewell");
  m_object.constant("Title", "s", title);
  m_object.constant("ItemIsMenu", "b", false);
  m_object.constant("Menu", "o", menuPath);
  m_object.constant("IconThemePath", "s", "");
  m_object.constant("XAyatanaOrderingIndex", "u", std::uint32_t{0});
}

void StatusItem::describeAppearance() {
  const auto text = [this](const char* name, auto value) {
    m_object.silentProperty(name, "s", [this, name, value = std::move(value)](auto& reply) {
      noteReader(name, reply);
      return sd_bus_message_append(&reply, "s", std::string(value()).c_str());
    });
  };
  text("Status", [this] { return status(); });
  text("IconName", [this] { return iconName(); });
  text("IconAccessibleDesc", [this] { return m_texts.label; });
  text("XAyatanaLabel", [this] { return steadyLabel(m_texts.label); });
  text("XAyatanaLabelGuide", [this] { return m_guide; });
  m_object.silentProperty("IconPixmap", "a(iiay)", [this](sd_bus_message& reply) {
    noteReader("IconPixmap", reply);
    return appendPictures(reply);
  });
  m_object.silentProperty("ToolTip", "(sa(iiay)ss)",
                          [this](sd_bus_message& reply) { return appendToolTip(reply); });
  for (const char* name :
       {"OverlayIconName", "AttentionIconName", "AttentionMovieName", "AttentionAccessibleDesc"}) {
    m_object.constant(name, "s", "");
  }
  for (const char* name : {"OverlayIconPixmap", "AttentionIconPixmap"}) {
    m_object.silentProperty(name, "a(iiay)", appendNoPictures);
  }
  for (const char* name : {"NewTitle", "NewIcon", "NewAttentionIcon", "NewOverlayIcon",
                           "NewToolTip", "NewIconThemePath", "NewMenu"}) {
    m_object.signal(name, "");
  }
  m_object.signal("NewStatus", "s");
  m_object.signal("XAyatanaNewLabel", "ss");
}

void StatusItem::describeMethods() {
  const auto atPoint = [this](sd_bus_message& call, sd_bus_message&) {
    int x = 0;
    int y = 0;
    if (sd_bus_message_read(&call, "ii", &x, &y) >= 0) {
      const WindowRequest::Point point{x, y};
      m_ask({WindowRequest::Kind::panel,
             takeToken(),
             m_isPlaceTold ? std::optional(point) : std::nullopt,
             {}});
    }
    return 0;
  };
  const auto nothing = [](sd_bus_message&, sd_bus_message&) { return 0; };
  m_object.method("Activate", "ii", "", atPoint);
  m_object.method("SecondaryActivate", "ii", "", nothing);
  m_object.method("ContextMenu", "ii", "", nothing);
  m_object.method("Scroll", "is", "", nothing);
  m_object.method("ProvideXdgActivationToken", "s", "", [this](sd_bus_message& call, auto&) {
    const char* token = "";
    sd_bus_message_read(&call, "s", &token);
    const std::string_view text(token);
    m_token = text.size() <= longestActivationToken ? text : "";
    return 0;
  });
}

void StatusItem::setHost(const std::string& process) {
  m_watcherShows = presentationOf(process);
  m_isPlaceTold = tellsClickedPlace(process);
  m_isAllReadWithPicture = readsAllWithPicture(process);
  m_readers.forget();
  adapt();
}

void StatusItem::noteReader(const char* property, sd_bus_message& answer) {
  if (!m_watcherShows) {
    m_readers.read(property, answer);
  }
}

void StatusItem::adapt() {
  const ItemPresentation now = m_watcherShows.value_or(m_readers.presentation());
  if (std::exchange(m_presentation, now) != now && !m_isWithdrawn) {
    m_object.emit("NewIcon");
    if (now == ItemPresentation::label) {
      announceAppearance();
    }
  }
}

void StatusItem::show(const ItemTexts& texts, const std::string& guide) {
  const ItemTexts before = std::exchange(m_texts, texts);
  const bool isNewGuide = std::exchange(m_guide, guide) != guide;
  if (m_isWithdrawn) {
    return;
  }
  const bool isNewAppearance = before.label != texts.label || isNewGuide;
  if (isNewAppearance) {
    announceAppearance();
  }
  if (before != texts && !(isNewAppearance && m_isAllReadWithPicture)) {
    m_object.emit("NewToolTip");
  }
}

void StatusItem::setWithdrawn(bool isWithdrawn) {
  if (std::exchange(m_isWithdrawn, isWithdrawn) == isWithdrawn) {
    return;
  }
  m_object.emit("NewStatus", [this](sd_bus_message& signal) {
    return sd_bus_message_append(&signal, "s", status());
  });
  if (!isWithdrawn) {
    announceAppearance();
    m_object.emit("NewToolTip");
  }
}

void StatusItem::announceAppearance() {
  if (m_presentation == ItemPresentation::label) {
    m_object.emit("XAyatanaNewLabel", [this](sd_bus_message& signal) {
      return sd_bus_message_append(&signal, "ss", steadyLabel(m_texts.label).c_str(),
                                   m_guide.c_str());
    });
  } else {
    m_object.emit("NewIcon");
  }
}

void StatusItem::announceGround() {
  if (m_presentation == ItemPresentation::squareTile && !m_isWithdrawn) {
    m_object.emit("NewIcon");
  }
}

const char* StatusItem::status() const { return m_isWithdrawn ? "Passive" : "Active"; }

const char* StatusItem::iconName() const {
  return m_presentation == ItemPresentation::label ? themeIcon : "";
}

int StatusItem::appendPictures(sd_bus_message& message) const {
  BusWriter writer(message);
  writer.open('a', "(iiay)");
  const auto append = [&](TileSize size, const auto& draw) {
    std::vector<std::uint8_t> argb(size.bytes());
    draw(argb);
    writer.open('r', "iiay").add("ii", size.width, size.height);
    writer.step(
        [&] { return sd_bus_message_append_array(&message, 'y', argb.data(), argb.size()); });
    writer.close();
  };
  if (m_presentation == ItemPresentation::widePicture) {
    append(TextTile::wideSize(m_guide),
           [this](auto& argb) { TextTile::drawWide(m_texts.label, m_guide, argb); });
  }
  if (m_presentation == ItemPresentation::squareTile) {
    const TileGround ground = m_scheme.isLight() ? TileGround::light : TileGround::dark;
    for (const int edge : {22, 44}) {
      append({edge, edge},
             [&](auto& argb) { TextTile::drawSquare(m_texts.label, edge, argb, ground); });
    }
  }
  return writer.close().result();
}

int StatusItem::appendToolTip(sd_bus_message& message) const {
  const std::string heading = std::string(title) + ": " + m_texts.status;
  const std::string body = m_texts.download + "\n" + m_texts.upload + "\n" + m_texts.latency;
  return sd_bus_message_append(&message, "(sa(iiay)ss)", "", 0, heading.c_str(), body.c_str());
}

} // namespace tidewell
