#pragma once

#include "app/BusFace.h"
#include "app/ChangeCoalescer.h"
#include "app/ItemMenu.h"
#include "app/StatusItem.h"
#include "app/WatcherClient.h"

#include <functional>

namespace tidewell {

class AppSettings;
class DefaultsStore;
class SessionBus;
struct MonitorState;
struct SamplerState;

/// What the resident shows of itself: the item in the panel, its menu and the interface on the bus.
/// Main thread.
class ResidentShell {
public:
  /// What it shows; borrowed.
  struct Sources {
    SamplerState& sampler;
    MonitorState& monitor;
    const AppSettings& settings;
    DefaultsStore& defaults;
  };

  /// Borrows queue and bus.
  ResidentShell(WorkQueue& main, SessionBus& bus, const Sources& sources,
                const BusFace::Actions& actions);

private:
  void refresh();

  Sources m_sources;
  BusFace m_face;
  StatusItem m_item;
  ItemMenu m_menu;
  ChangeCoalescer m_changes;
  WatcherClient m_watcher;
};

} // namespace tidewell
