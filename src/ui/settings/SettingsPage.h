#pragma once

#include "base/Observers.h"
#include "platform/PreferencesStore.h"
#include "settings/AppSettings.h"

#include <QString>
#include <QWidget>

#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

class QVBoxLayout;

namespace tidewell {

class ChoiceList;
class ToggleSwitch;

/// A property of the preferences: its key and how it is read and written.
template <class T> struct SettingBinding {
  std::string_view key;
  T (AppSettings::*read)() const;
  void (AppSettings::*write)(T);
};

/// An entry of a choice list and what is stored for it.
template <class T> struct SettingOption {
  const char* label;
  T value;
};

/// A setting: its title over its description at the left, its control at the right, a line below.
/// Main thread.
class SettingRow final : public QWidget {
  Q_OBJECT

public:
  /// Takes the control, which is named after the setting.
  SettingRow(const QString& title, const QString& description, QWidget* control,
             QWidget* parent = nullptr);
};

/// The content of one section: its title, and groups of settings below. Every control shows what is
/// stored, whoever wrote it, and stores what the user chooses at once. Main thread.
class SettingsPage : public QWidget {
  Q_OBJECT

public:
  /// Borrows the preferences and the store that they are kept in.
  SettingsPage(std::string_view title, AppSettings& settings, PreferencesStore& store);

  /// Begins a group; what follows belongs to it.
  void settingGroup(const char* title);

  /// Adds a switch.
  void settingToggle(const char* title, const char* description, SettingBinding<bool> isOn);

  /// Adds a choice list. It shows no entry for a value that none of the options has.
  template <class T>
  void settingPicker(const char* title, const char* description, SettingBinding<T> selection,
                     std::vector<SettingOption<T>> options) {
    QStringList labels;
    for (const auto& option : options) {
      labels << QString::fromLatin1(option.label);
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
                 std::invoke(selection.write, m_settings,
                             options.at(static_cast<std::size_t>(index)).value);
               }});
  }

  /// Adds a line of text alone.
  void note(const char* text);

private:
  struct Choices {
    QStringList labels;
    std::function<int()> selected; // -1: none
    std::function<void(int)> choose;
  };

  void addPicker(const char* title, const char* description, std::string_view key,
                 const Choices& choices);
  void addRow(const char* title, const char* description, QWidget* control);
  void observe(std::string_view key, std::function<void()> show);

  AppSettings& m_settings;
  PreferencesStore& m_store;
  QVBoxLayout* m_column;
  // Ended before the controls go.
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell
