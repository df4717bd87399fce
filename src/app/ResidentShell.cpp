#include "app/ResidentShell.h"

#include "app/ItemTexts.h"
#include "connectivity/MonitorState.h"
#include "platform/PreferencesStore.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

namespace {

using Window = WindowRequest::Kind;

enum Row : std::size_t { statusRow, downloadRow, uploadRow, latencyRow, speedTestRow = 8 };

std::string currentDesktop() {
  const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
  return desktop != nullptr ? desktop : "";
}

} // namespace

ResidentShell::ResidentShell(WorkQueue& main, SessionBus& bus, const ResidentSources& sources,
                             Actions actions)
    : m_sources(sources), m_actions(std::move(actions)), m_face(main, bus, sources, busActions()),
      m_item(bus, activated()), m_menu(bus, StatusItem::menuPath, menuRows()),
      m_changes(main, [this] { refresh(); }),
      m_fallback(main,
                 [this](bool isWanted) { open(isWanted ? Window::showItem : Window::hideItem); }),
      m_watcher(main, bus, watcherEvents()) {
  watch();
  refresh();
}

std::vector<MenuRow> ResidentShell::menuRows() const {
  using Kind = MenuRow::Kind;
  const auto opens = [this](Window window) { return [this, window] { open(window); }; };
  const auto copy = [this] {
    m_actions.ask({Window::copy, {}, {}, addressToCopy(m_sources.monitor.connectionInfo.get())});
  };
  return {{Kind::text, "", {}},
          {Kind::text, "", {}},
          {Kind::text, "", {}},
          {Kind::text, "", {}},
          {Kind::separator, "", {}},
          {Kind::command, "Open", opens(Window::panel)},
          {Kind::command, "Details", opens(Window::detail)},
          {Kind::command, "Settings", opens(Window::settings)},
          {Kind::command, "Speed Test", m_actions.runSpeedTest},
          {Kind::command, "Copy IP", copy},
          {Kind::separator, "", {}},
          {Kind::command, "Quit", m_actions.quit}};
}

StatusItem::Activated ResidentShell::activated() const {
  return [this](int x, int y, const std::string& token) {
    const WindowRequest::Point point{x, y};
    m_actions.ask({Window::panel, token, m_isPlaceTold ? std::optional(point) : std::nullopt, {}});
  };
}

BusFace::Actions ResidentShell::busActions() const {
  return {m_actions.quit, m_actions.alreadyRunning, m_actions.runSpeedTest,
          [this](Window window) { open(window); }};
}

WatcherClient::Events ResidentShell::watcherEvents() {
  return {[this](const std::string& process) {
            m_item.setPresentation(presentationFor(process, currentDesktop()));
            m_isPlaceTold = tellsClickedPlace(process);
          },
          [this](bool isTaken) { m_fallback.setTaken(isTaken); }};
}

void ResidentShell::open(Window window) const { m_actions.ask({window, {}, {}, {}}); }

void ResidentShell::watch() {
  m_changes.watch(m_sources.monitor.isConnected);
  m_changes.watch(m_sources.sampler.snapshots);
  m_changes.watch(m_sources.speedTest.isRunning);
  m_changes.keep(
      m_sources.preferences.observe(preference::showUploadInMenubar.key, [this](const auto&) {
        m_changes.mark();
        m_face.settingsChanged();
      }));
}

void ResidentShell::refresh() {
  const ItemTexts texts = itemTexts(m_sources.sampler, m_sources.monitor, m_sources.settings);
  m_item.show(texts,
              m_sources.settings.showUploadInMenubar() ? labelGuide : labelGuideWithoutUpload);
  m_menu.setLabel(statusRow, texts.status);
  m_menu.setLabel(downloadRow, texts.download);
  m_menu.setLabel(uploadRow, texts.upload);
  m_menu.setLabel(latencyRow, texts.latency);
  m_menu.setLabel(speedTestRow, m_sources.speedTest.isRunning.get() ? "Testing..." : "Speed Test");
  m_menu.announce();
}

} // namespace tidewell
