#include "app/ResidentShell.h"

#include "base/Translation.h"
#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "platform/PreferencesStore.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"
#include "tile/TextTile.h"

#include <string>
#include <utility>

namespace tidewell {

using Window = WindowRequest::Kind;

ResidentShell::ResidentShell(WorkQueue& main, SessionBus& bus, const ResidentSources& sources,
                             ResidentActions actions)
    : m_main(main), m_sources(sources), m_actions(std::move(actions)),
      m_faces(bus, [this] { facesChanged(); }), m_face(bus, m_sources, m_actions, m_faces),
      m_item(bus, m_actions.ask), m_menu(bus, StatusItem::menuPath, menuRows()),
      m_fallback(main,
                 [this](bool isWanted) { open(isWanted ? Window::showItem : Window::hideItem); }),
      m_watcher(main, bus,
                {[this](const std::string& process) { m_item.setHost(process); },
                 [this](bool isTaken) {
                   m_isItemTaken = isTaken;
                   updateFallback();
                 }}) {
  watchSources();
  refresh();
}

std::vector<MenuRow> ResidentShell::menuRows() {
  const auto text = [this](std::string ItemTexts::*field) {
    return MenuRow::text([this, field] { return m_item.texts().*field; });
  };
  const auto opens = [this](Window window) {
    return [this, window] { m_actions.ask({window, m_item.takeToken(), {}, {}}); };
  };
  const auto copy = [this] {
    m_actions.ask({Window::copy,
                   m_item.takeToken(),
                   {},
                   addressToCopy(m_sources.monitor.connectionInfo.get())});
  };
  const auto speedTest = [this] {
    return std::string(m_sources.speedTest.isRunning.get() ? translated("Testing...")
                                                           : translated("Speed Test"));
  };
  return {text(&ItemTexts::status),
          text(&ItemTexts::download),
          text(&ItemTexts::upload),
          text(&ItemTexts::latency),
          MenuRow::separator(),
          MenuRow::command(translated("Open"), opens(Window::panel)),
          MenuRow::command(translated("Details"), opens(Window::detail)),
          MenuRow::command(translated("Settings"), opens(Window::settings)),
          MenuRow::command(speedTest, m_actions.runSpeedTest),
          MenuRow::command(translated("Copy IP"), copy).named("copy"),
          MenuRow::separator(),
          MenuRow::command(translated("Quit"), m_actions.quit)};
}

void ResidentShell::watchSources() {
  const auto watch = [this](auto& published) {
    m_changes.push_back(published.subscribe([this](const auto& /*value*/) { refreshSoon(); }));
  };
  watch(m_sources.monitor.isConnected);
  watch(m_sources.monitor.connectionInfo);
  watch(m_sources.sampler.snapshots);
  watch(m_sources.tracker.processes);
  watch(m_sources.speedTest.isRunning);
  watch(m_sources.speedTest.lastResult);
  watch(m_sources.speedTest.lastMeasured);
  watch(m_sources.speedTest.failure);
  m_changes.push_back(m_sources.preferences.observe(
      preference::showUploadInMenubar.key, [this](const auto& /*value*/) { refreshSoon(); }));
}

void ResidentShell::open(Window window) const { m_actions.ask({window, {}, {}, {}}); }

void ResidentShell::facesChanged() {
  m_item.setWithdrawn(m_faces.any());
  updateFallback();
  refreshSoon();
}

void ResidentShell::updateFallback() { m_fallback.setTaken(m_isItemTaken || m_faces.any()); }

void ResidentShell::refreshSoon() {
  // Once for all changes of the same task, such as the six values of a sample.
  if (!m_refreshDue) {
    m_refreshDue = m_main.repeat(0.0, 0.0, [this] {
      m_refreshDue.reset();
      refresh();
    });
  }
}

void ResidentShell::refresh() {
  m_face.announce();
  m_item.show(itemTexts(m_sources.sampler, m_sources.monitor, m_sources.settings),
              m_sources.settings.showUploadInMenubar() ? labelGuide : labelGuideWithoutUpload);
  if (!m_faces.any()) {
    m_menu.refresh();
  }
}

} // namespace tidewell
