#include "ui/settings/SettingsSection.h"

namespace tidewell {

std::string_view rawValue(SettingsSection section) {
  switch (section) {
  case SettingsSection::general:
    break;
  case SettingsSection::alerts:
    return "Alerts";
  case SettingsSection::display:
    return "Display";
  case SettingsSection::data:
    return "Data";
  case SettingsSection::advanced:
    return "Advanced";
  }
  return "General";
}

Icon symbol(SettingsSection section) {
  switch (section) {
  case SettingsSection::general:
    break;
  case SettingsSection::alerts:
    return Icon::bell;
  case SettingsSection::display:
    return Icon::barChart;
  case SettingsSection::data:
    return Icon::drive;
  case SettingsSection::advanced:
    return Icon::link;
  }
  return Icon::gear;
}

} // namespace tidewell
