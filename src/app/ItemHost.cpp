#include "app/ItemHost.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewell {
namespace {

// Panels start after the programs of the session, on a slow machine many seconds later.
constexpr Seconds patience = 20.0;

struct Known {
  std::string_view beginning;
  ItemPresentation presentation;
  bool readsAll = false; // when the picture changes
};

// As observed on each desktop. Watchers that show nothing are not listed, such as Plasma's kded.
constexpr std::array<Known, 13> hosts = {{
    {"gnome-shell", ItemPresentation::label},
    {"mate-indicator", ItemPresentation::label},
    {"notification-ar", ItemPresentation::label}, // MATE's notification area
    {"mate-panel", ItemPresentation::label},
    {"ayatana-indica", ItemPresentation::label},
    {"xapp-sn-watche", ItemPresentation::widePicture}, // Cinnamon
    {"waybar", ItemPresentation::widePicture},
    {"xfce4-panel", ItemPresentation::squareTile, true},
    {"wrapper-2.0", ItemPresentation::squareTile, true}, // an Xfce panel plugin's process
    {"panel-", ItemPresentation::squareTile, true},      // the same, renamed after its plugin
    {"lxqt-panel", ItemPresentation::squareTile},
    {"plasmashell", ItemPresentation::squareTile},
    {"swaybar", ItemPresentation::squareTile},
}};

const Known* find(std::string_view process) {
  const auto* const found = std::ranges::find_if(
      hosts, [&](const Known& known) { return process.starts_with(known.beginning); });
  return found == hosts.end() ? nullptr : found;
}

} // namespace

std::optional<ItemPresentation> presentationOf(std::string_view process) {
  const Known* const known = find(process);
  return known != nullptr ? std::optional(known->presentation) : std::nullopt;
}

bool readsAllWithPicture(std::string_view process) {
  const Known* const known = find(process);
  return known != nullptr && known->readsAll;
}

bool tellsClickedPlace(std::string_view process) {
  // MATE's notification area counts from its own corner.
  return !process.starts_with("notification-ar");
}

FallbackItem::FallbackItem(WorkQueue& main, std::function<void(bool isWanted)> show)
    : m_main(main), m_show(std::move(show)) {
  setTaken(false);
}

void FallbackItem::setTaken(bool isTaken) {
  if (isTaken) {
    m_patience.reset();
    if (std::exchange(m_isShown, false)) {
      m_show(false);
    }
  } else if (!m_isShown && !m_patience) {
    m_patience = m_main.repeat(patience, 0.0, [this] {
      m_isShown = true;
      m_show(true);
    });
  }
}

} // namespace tidewell
