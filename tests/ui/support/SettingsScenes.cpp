#include "Preferences.h"
#include "Scene.h"
#include "ui/components/ShownText.h"

#include <QAbstractItemView>

namespace tidewell::test {
namespace {

using Section = SettingsSection;

Scene scene(
    std::string name, Section section,
    const std::function<void(Preferences&)>& act = [](Preferences&) {}) {
  return {"settings-" + std::move(name), [section, act] {
            auto preferences = std::make_shared<Preferences>();
            preferences->open(section);
            act(*preferences);
            preferences->scheduler.settle();
            return ownedBy(preferences, preferences->view.get());
          }};
}

// Values that no list offers.
void setForeign(Preferences& preferences) {
  preferences.store.set("refreshInterval", 3.0);
  preferences.store.set("monitorInterface", std::string("wlan0"));
  preferences.store.set("checkForUpdates", false);
}

Scene openList() {
  return {"settings-openList", [] {
            auto preferences = std::make_shared<Preferences>();
            preferences->open();
            ChoiceList& list = preferences->list(translatedText("Monitor Interface"));
            list.showPopup();
            return ownedBy(preferences, list.view()->window());
          }};
}

} // namespace

std::vector<Scene> settingsScenes() {
  return {
      scene("general", Section::general),
      scene("alerts", Section::alerts),
      scene("display", Section::display),
      scene("data", Section::data),
      scene("advanced", Section::advanced),
      scene("foreign", Section::general, setForeign),
      scene("keyboard", Section::general,
            [](Preferences& preferences) {
              preferences.view->activateWindow();
              preferences.toggle(translatedText("Launch at Login")).setFocus(Qt::TabFocusReason);
            }),
      scene("small", Section::alerts,
            [](Preferences& preferences) { preferences.view->resize(SettingsView::leastSize); }),
      scene("unsaved", Section::general,
            [](Preferences& preferences) {
              preferences.store.refusal = std::make_error_code(std::errc::read_only_file_system);
              preferences.toggle(translatedText("Track Per-Process")).click();
            }),
      openList(),
  };
}

} // namespace tidewell::test
