#pragma once

#include "app/AttachedFaces.h"
#include "app/BusFace.h"
#include "app/ItemHost.h"
#include "app/ItemMenu.h"
#include "app/StatusItem.h"
#include "app/WatcherClient.h"

#include <memory>
#include <vector>

namespace tidewell {

class SessionBus;

/// What the resident shows: the item in the panel, its menu and the interface on the bus.
class ResidentShell {
public:
  /// Borrows queue, bus and sources.
  ResidentShell(WorkQueue& main, SessionBus& bus, const ResidentSources& sources,
                ResidentActions actions);

  /// Whether another program shows the figures.
  [[nodiscard]] bool hasFace() const { return m_faces.any(); }

private:
  [[nodiscard]] std::vector<MenuRow> menuRows();
  void watchSources();
  void open(WindowRequest::Kind window) const;
  void facesChanged();
  void updateFallback();
  void refreshSoon();
  void refresh();

  WorkQueue& m_main;
  ResidentSources m_sources;
  ResidentActions m_actions;
  AttachedFaces m_faces;
  BusFace m_face;
  StatusItem m_item;
  ItemMenu m_menu;
  FallbackItem m_fallback;
  bool m_isItemTaken = false;
  WatcherClient m_watcher;
  std::unique_ptr<Timer> m_refreshDue;
  std::vector<Subscription> m_changes;
};

} // namespace tidewell
