// Any bytes as the kernel's tables of devices and routes; the first line is the device's name.
// Every counter is in the text.

#include "helpers/nettop/DeviceTraffic.h"
#include "platform/linux/network/DeviceTable.h"
#include "support/Require.h"

#include <algorithm>
#include <string>

namespace {

using tidewell::fuzz::require;

void requireFrom(std::string_view text, std::uint64_t counter) {
  require(text.find(std::to_string(counter)) != std::string_view::npos);
}

void requireDevices(std::string_view text, const std::set<std::string>& devices) {
  for (const std::string& device : devices) {
    require(!device.empty() && device != "lo" && device.find('\n') == std::string::npos);
    require(text.find(device) != std::string_view::npos);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto text = tidewell::fuzz::textOf(data, size);
  const auto name = text.substr(0, text.find('\n'));
  const auto table = text.substr(std::min(name.size() + 1, size));
  if (const auto record = tidewell::parseDeviceTable(table, name)) {
    require(record->name == name && record->index == 0);
    requireFrom(table, record->bytesIn);
    requireFrom(table, record->bytesOut);
    requireFrom(table, record->packetsIn);
    requireFrom(table, record->packetsOut);
  }
  requireDevices(text, tidewell::nettop::defaultDevices(text));
  requireDevices(text, tidewell::nettop::defaultDevicesIpv6(text));
  return 0;
}
