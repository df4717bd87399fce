#pragma once

#include "app/ColourScheme.h"
#include "app/ItemHost.h"
#include "app/ItemReaders.h"
#include "base/Observers.h"
#include "format/MenubarLabel.h"
#include "platform/linux/bus/BusObject.h"
#include "windowRequests/WindowRequest.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace tidewell {

class SessionBus;

/// The item in the panel, as an org.kde.StatusNotifierItem.
class StatusItem {
public:
  /// The object path of the item's menu.
  static constexpr const char* menuPath = "/MenuBar";

  /// Borrows the bus. `ask` is called with a request for the panel when the user clicks the item.
  StatusItem(SessionBus& bus, std::function<void(const WindowRequest& request)> ask);

  /// Adapts to the host, given the name of the watcher's process; empty if it is not known. For an
  /// unknown one, the programs that read the item decide.
  void setHost(const std::string& process);

  /// Asks the host to hide the item, and announces no changes until it is shown again.
  void setWithdrawn(bool isWithdrawn);

  /// Shows these texts and notifies the host of changes. `guide` is the widest label.
  void show(const ItemTexts& texts, const std::string& guide);

  /// The activation token for what the user chooses next, as the host has sent it; empty without
  /// one.
  [[nodiscard]] std::string takeToken() { return std::exchange(m_token, {}); }

  [[nodiscard]] const ItemTexts& texts() const { return m_texts; }

private:
  void describeIdentity();
  void describeAppearance();
  void describeMethods();
  [[nodiscard]] const char* iconName() const;
  [[nodiscard]] const char* status() const;
  void noteReader(const char* property, sd_bus_message& answer);
  void adapt();
  void announceAppearance();
  void announceGround();
  int appendPictures(sd_bus_message& message) const;
  int appendToolTip(sd_bus_message& message) const;

  BusObject m_object;
  std::function<void(const WindowRequest& request)> m_ask;
  std::string m_token;                            // of the next click
  std::optional<ItemPresentation> m_watcherShows; // if its process is known
  ItemReaders m_readers;
  ColourScheme m_scheme;
  ItemPresentation m_presentation = ItemPresentation::squareTile;
  bool m_isPlaceTold = true; // by the host, with a click
  bool m_isAllReadWithPicture = false;
  bool m_isWithdrawn = false;
  ItemTexts m_texts;
  std::string m_guide;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
