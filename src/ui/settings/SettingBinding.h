#pragma once

#include "settings/AppSettings.h"

#include <string_view>

namespace tidewell {

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

} // namespace tidewell
