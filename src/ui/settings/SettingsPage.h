#pragma once

#include "base/Observers.h"
#include "platform/PreferencesStore.h"
#include "settings/AppSettings.h"
#include "ui/settings/UnsavedSettings.h"

#include <QString>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

class QAbstractButton;
class QVBoxLayout;

namespace tidewell {

class ChoiceList;
class ToggleSwitch;

/// What the settings show and change. Outlives the pages.
struct SettingsSources {
  AppSettings& settings;
  PreferencesStore& store;
  UnsavedSettings& unsaved;
};

/// A preference: its key, getter and setter.
template <class T> struct SettingBinding {
  std::string_view key;
  T (AppSettings::*read)() const;
  std::error_code (AppSettings::*write)(T);
};

/// An entry of a choice list and its stored value.
template <class T> struct SettingOption {
  const char* label;
  T value;
};

/// A setting: title and description at the left, control at the right, and a line below. A click on
/// the texts operates a switch.
class SettingRow final : public QWidget {
  Q_OBJECT

public:
  /// Takes ownership of the control, which gets the setting's name.
  SettingRow(const QString& title, const QString& description, QWidget* control,
             QWidget* parent = nullptr);

protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

private:
  QAbstractButton* m_button; // the control; null if it is a list
};

/// The content of one section: its title and groups of settings. The controls always show the
/// stored values, and store changes immediately. A change that cannot be stored stays with the
/// unsaved settings until the user makes another one or another program changes the value.
class SettingsPage : public QWidget {
  Q_OBJECT

public:
  SettingsPage(const QString& title, const SettingsSources& sources);

  /// Starts a group.
  void settingGroup(const char* title);

  /// Adds a switch.
  void settingToggle(const char* title, const char* description, SettingBinding<bool> isOn);

  /// Adds a choice list. It shows no selection if no option has the stored value.
  template <class T>
  void settingPicker(const char* title, const char* description, SettingBinding<T> selection,
                     std::vector<SettingOption<T>> options) {
    QStringList labels;
    for (const auto& option : options) {
      labels << QString::fromUtf8(option.label);
    }
    addPicker(title, description, selection.key,
              {labels,
               [this, selection, options] {
                 const T value = std::invoke(selection.read, m_settings);
                 const auto found =
                     std::find_if(options.begin(), options.end(),
                                  [&](const auto& option) { return option.value == value; });
                 return found == options.end() ? -1 : static_cast<int>(found - options.begin());
               },
               [this, selection, options](int index) {
                 change(selection, options.at(static_cast<std::size_t>(index)).value);
               }});
  }

  /// Adds a line of text.
  void note(const char* text);

private:
  struct Choices {
    QStringList labels;
    std::function<int()> selected; // -1: none
    std::function<void(int)> choose;
  };

  template <class T> void change(const SettingBinding<T>& setting, T value) {
    if (std::invoke(setting.read, m_settings) == value && m_unsaved.forget(setting.key)) {
      return; // the user wants what is stored
    }
    m_unsaved.store(setting.key, [&settings = m_settings, setting, value] {
      return std::invoke(setting.write, settings, value);
    });
  }

  void addPicker(const char* title, const char* description, std::string_view key,
                 const Choices& choices);
  void addRow(const char* title, const char* description, QWidget* control);
  void observe(std::string_view key, std::function<void()> show);

  AppSettings& m_settings;
  PreferencesStore& m_store;
  UnsavedSettings& m_unsaved;
  QVBoxLayout* m_column;
  // Ended before the controls go.
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
