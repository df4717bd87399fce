#include "Preferences.h"
#include "Scene.h"

#include <QAbstractItemView>

#include <utility>

namespace tidewell::test {

namespace {

using Section = SettingsSection;
using Change = std::function<void(Preferences&)>;

Scene scene(
    std::string name, Section section, const Change& act = [](Preferences&) {}) {
  return {"settings-" + std::move(name), [section, act] {
            auto preferences = std::make_shared<Preferences>();
            preferences->open(section);
            act(*preferences);
            preferences->scheduler.settle();
            Panel::settle();
            QWidget* const view = preferences->view.get();
            return std::shared_ptr<QWidget>(std::move(preferences), view);
          }};
}

// Values that others wrote and that no list offers.
void setForeign(Preferences& preferences) {
  preferences.store.set("refreshInterval", 3.0);
  preferences.store.set("monitorInterface", std::string("wlan0"));
  preferences.store.set("checkForUpdates", false);
}

Scene openList() {
  return {"settings-openList", [] {
            auto preferences = std::make_shared<Preferences>();
            preferences->open();
            ChoiceList& list = preferences->list("Monitor Interface");
            list.showPopup();
            Panel::settle();
            QWidget* const popup = list.view()->window();
            return std::shared_ptr<QWidget>(std::move(preferences), popup);
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
              preferences.toggle("Launch at Login").setFocus(Qt::TabFocusReason);
            }),
      scene("small", Section::alerts,
            [](Preferences& preferences) { preferences.view->resize(SettingsView::leastSize); }),
      openList(),
  };
}

} // namespace tidewell::test
