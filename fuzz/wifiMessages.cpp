// Any bytes as the kernel's answers about Wi-Fi, in memory of exactly their size. Network names,
// chosen by strangers, become safe for a label.

#include "platform/linux/network/WifiName.h"
#include "support/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tidewell::fuzz::require;
  constexpr std::uint16_t usualFamily = 0x1C;
  const auto messages = tidewell::fuzz::messagesOf(data, size);
  const auto family = tidewell::parseFamily(messages);
  const auto interfaces = tidewell::parseWirelessInterfaces(messages, family.value_or(usualFamily));
  require(interfaces.size() <= size / 20);
  bool hasName = false;
  for (const auto& interface : interfaces) {
    require(interface.index > 0);
    require(!interface.ssid || (!interface.ssid->empty() && interface.ssid->size() <= 32));
    hasName = hasName || interface.ssid;
    const auto own = tidewell::chooseWifiName(interfaces, interface.index);
    require(!own || !own->empty());
  }
  const auto name = tidewell::chooseWifiName(interfaces, std::nullopt);
  require(name.has_value() == hasName);
  if (name) {
    require(!name->empty() && name->size() <= 3 * 32);
    tidewell::fuzz::requireShowable(*name);
  }
  const auto inUse = tidewell::parseNetworkInUse(messages, family.value_or(usualFamily));
  require(!inUse || (!inUse->empty() && inUse->size() <= 32));
  return 0;
}
