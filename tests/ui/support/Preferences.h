#pragma once

#include "FakeTime.h"
#include "Panel.h"
#include "settings/AppSettings.h"
#include "support/FakeLoginItem.h"
#include "support/FakePreferencesStore.h"
#include "support/VirtualScheduler.h"
#include "ui/components/Buttons.h"
#include "ui/components/ChoiceList.h"
#include "ui/settings/SettingsSidebar.h"
#include "ui/settings/SettingsView.h"

#include <memory>

namespace tidewell::test {

/// The settings, with preferences in memory.
struct Preferences {
  VirtualScheduler scheduler;
  FakePreferencesStore store{scheduler.main()};
  FakeLoginItem loginItem;
  AppSettings settings{store, loginItem};
  FakeTime time;
  std::unique_ptr<SettingsView> view;

  /// Creates the view, as for each opening.
  void open(SettingsSection section = SettingsSection::general) {
    view = std::make_unique<SettingsView>(settings, store, time.time());
    view->show();
    entry(section).click();
    Panel::settle();
  }

  [[nodiscard]] SidebarEntry& entry(SettingsSection section) const {
    return *view->findChildren<SidebarEntry*>().at(static_cast<int>(section));
  }
  template <class Control> [[nodiscard]] Control& control(const QString& title) const {
    for (Control* found : view->findChildren<Control*>()) {
      if (found->accessibleName() == title) {
        return *found;
      }
    }
    throw std::out_of_range(title.toStdString());
  }
  [[nodiscard]] ToggleSwitch& toggle(const QString& title) const {
    return control<ToggleSwitch>(title);
  }
  [[nodiscard]] ChoiceList& list(const QString& title) const { return control<ChoiceList>(title); }
};

} // namespace tidewell::test
