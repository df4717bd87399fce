#pragma once

#include "app/BusFace.h"
#include "app/ChangeCoalescer.h"
#include "app/FallbackItem.h"
#include "app/ItemMenu.h"
#include "app/ResidentSources.h"
#include "app/StatusItem.h"
#include "app/WatcherClient.h"

#include <functional>

namespace tidewell {

class SessionBus;

/// What the resident shows of itself: the item in the panel, its menu and the interface on the bus.
/// Main thread.
class ResidentShell {
public:
  /// What the user's wishes do.
  struct Actions {
    std::function<void()> quit;
    /// The program runs already; the other one has been asked for its panel.
    std::function<void()> alreadyRunning;
    std::function<void()> runSpeedTest;
    /// Asks the windows' process for something.
    std::function<void(const WindowRequest& request)> ask;
  };

  /// Borrows queue and bus.
  ResidentShell(WorkQueue& main, SessionBus& bus, const ResidentSources& sources, Actions actions);

private:
  [[nodiscard]] std::vector<MenuRow> menuRows() const;
  [[nodiscard]] StatusItem::Activated activated() const;
  [[nodiscard]] BusFace::Actions busActions() const;
  [[nodiscard]] WatcherClient::Events watcherEvents();
  void open(WindowRequest::Kind window) const;
  void watch();
  void refresh();

  ResidentSources m_sources;
  Actions m_actions;
  BusFace m_face;
  StatusItem m_item;
  ItemMenu m_menu;
  ChangeCoalescer m_changes;
  FallbackItem m_fallback;
  bool m_isPlaceTold = true;
  WatcherClient m_watcher;
};

} // namespace tidewell
