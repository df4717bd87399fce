#pragma once

#include "app/BusFace.h"
#include "app/ChangeCoalescer.h"
#include "app/ItemMenu.h"
#include "app/ResidentSources.h"
#include "app/StatusItem.h"
#include "app/WatcherClient.h"

namespace tidewell {

class SessionBus;

/// What the resident shows of itself: the item in the panel, its menu and the interface on the bus.
/// Main thread.
class ResidentShell {
public:
  /// Borrows queue and bus.
  ResidentShell(WorkQueue& main, SessionBus& bus, const ResidentSources& sources,
                const BusFace::Actions& actions);

private:
  void refresh();

  ResidentSources m_sources;
  BusFace m_face;
  StatusItem m_item;
  ItemMenu m_menu;
  ChangeCoalescer m_changes;
  WatcherClient m_watcher;
};

} // namespace tidewell
