#pragma once

#include "app/ItemHost.h"
#include "app/ItemTexts.h"
#include "base/Observers.h"
#include "platform/linux/bus/BusObject.h"

#include <functional>
#include <string>

namespace tidewell {

class SessionBus;

/// The item in the panel, as an org.kde.StatusNotifierItem. Main thread.
class StatusItem {
public:
  /// The item's menu on the same connection.
  static constexpr const char* menuPath = "/MenuBar";

  /// Where on the screen the user activated the item, as far as the host tells, and the token that
  /// proves it; empty when the host gave none.
  using Activated = std::function<void(int x, int y, const std::string& token)>;

  /// Borrows the bus.
  StatusItem(SessionBus& bus, Activated activated);

  /// Shows these texts and tells the host of what changed for it. `guide` is the widest label.
  void show(const ItemTexts& texts, const std::string& guide);

  /// Adapts to the host.
  void setPresentation(ItemPresentation presentation);

private:
  void describeIdentity();
  void describeAppearance();
  void describeRequests();
  [[nodiscard]] const char* iconName() const;
  int appendPictures(sd_bus_message& message) const;
  int appendToolTip(sd_bus_message& message) const;

  BusObject m_object;
  Activated m_activated;
  std::string m_token;
  ItemPresentation m_presentation = ItemPresentation::squareTile;
  ItemTexts m_texts;
  std::string m_guide;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
