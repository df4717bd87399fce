#include "ui/placement/Compositing.h"

#include "ui/placement/XConnection.h"

#include <cstdlib>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace tidewell {

namespace {

template <class Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

bool isSelectionOwned(xcb_connection_t* connection, const std::string& selection) {
  const auto atomCookie =
      xcb_intern_atom(connection, 1, static_cast<uint16_t>(selection.size()), selection.data());
  const Owned<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomCookie, nullptr),
                                            std::free);
  if (!atom || atom->atom == XCB_ATOM_NONE) {
    return false;
  }
  const auto ownerCookie = xcb_get_selection_owner(connection, atom->atom);
  const Owned<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection, ownerCookie, nullptr), std::free);
  return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool hasCompositing() {
  xcb_connection_t* const connection = xConnection();
  return connection == nullptr || isSelectionOwned(connection, "_NET_WM_CM_S0");
}

} // namespace tidewell
