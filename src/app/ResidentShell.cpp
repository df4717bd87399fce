#include "app/ResidentShell.h"

#include "app/ItemTexts.h"
#include "connectivity/MonitorState.h"
#include "platform/DefaultsStore.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "settings/SettingsKeys.h"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

namespace {

enum Row : std::size_t { statusRow, downloadRow, uploadRow, latencyRow };

std::vector<MenuRow> menuRows(const std::function<void()>& quit) {
  using Kind = MenuRow::Kind;
  return {{Kind::text, "", {}}, {Kind::text, "", {}},      {Kind::text, "", {}},
          {Kind::text, "", {}}, {Kind::separator, "", {}}, {Kind::command, "Quit", quit}};
}

std::string currentDesktop() {
  const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
  return desktop != nullptr ? desktop : "";
}

} // namespace

ResidentShell::ResidentShell(WorkQueue& main, SessionBus& bus, const Sources& sources,
                             const BusFace::Actions& actions)
    : m_sources(sources),
      m_face(main, bus, sources.sampler, sources.monitor, sources.settings, actions),
      m_item(bus, [](int, int) {}), m_menu(bus, StatusItem::menuPath, menuRows(actions.quit)),
      m_changes(main, [this] { refresh(); }),
      m_watcher(main, bus, [this](const std::string& process) {
        m_item.setPresentation(presentationFor(process, currentDesktop()));
      }) {
  m_changes.watch(sources.monitor.isConnected);
  m_changes.watch(sources.sampler.snapshots);
  m_changes.keep(
      sources.defaults.observe(std::string(settingsKeys::showUploadInMenubar), [this](const auto&) {
        m_changes.mark();
        m_face.settingsChanged();
      }));
  refresh();
}

void ResidentShell::refresh() {
  const ItemTexts texts = itemTexts(m_sources.sampler, m_sources.monitor, m_sources.settings);
  m_item.show(texts,
              m_sources.settings.showUploadInMenubar() ? labelGuide : labelGuideWithoutUpload);
  m_menu.setLabel(statusRow, texts.status);
  m_menu.setLabel(downloadRow, texts.download);
  m_menu.setLabel(uploadRow, texts.upload);
  m_menu.setLabel(latencyRow, texts.latency);
  m_menu.announce();
}

} // namespace tidewell
