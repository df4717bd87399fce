#include "ui/components/ConnectionText.h"

#include "base/Translation.h"
#include "ui/components/ShownText.h"

namespace tidewell {

QString interfaceTypeText(ConnectionInfo::InterfaceType type) {
  return translatedText(std::string(rawValue(type)).c_str());
}

QString interfaceNameText(const ConnectionInfo& info) {
  const std::string type(rawValue(info.interfaceType));
  const std::string& name = info.interfaceName;
  return shownText(
      name.starts_with(type + " (") ? translated(type.c_str()) + name.substr(type.size()) : name);
}

QString networkNameText(const ConnectionInfo& info) {
  const std::string& name = info.networkName;
  const bool isKind = name == "Unknown" || interfaceType(name).has_value();
  return shownText(isKind ? translated(name.c_str()) : name);
}

} // namespace tidewell
