// The resident's services in virtual time, on a machine whose tools, servers, tables and
// preferences contain anything. Published values are well-formed.

#include "alerts/NotificationService.h"
#include "app/AppDelegate.h"
#include "base/Utf8.h"
#include "connectivity/NetworkMonitor.h"
#include "format/MenubarLabel.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestRunner.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMachine.h"
#include "support/FakePreferencesStore.h"
#include "support/Require.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>

namespace {

using namespace tidewell;
using fuzz::require;

// The most that a link can move in a millisecond; more would overflow 64-bit bytes per second.
constexpr std::int64_t mostMoved = std::int64_t{1} << 50;

/// The resident and its machine.
struct Resident {
  test::FakeMachine machine;
  test::FakePreferencesStore preferences{machine.scheduler.main()};
  test::FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  test::FakeNotificationCenter center;
  NotificationService notifications{settings, machine.clock, center};
  AppDelegate delegate{machine.platform, {settings, preferences, center, notifications}};
};

PreferenceValue anyValue(FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange(0, 3)) {
  case 0:
    return input.ConsumeBool();
  case 1:
    return input.ConsumeIntegral<std::int64_t>();
  case 2:
    return input.ConsumeFloatingPoint<double>();
  default:
    return input.ConsumeRandomLengthString(8);
  }
}

void changePreference(Resident& resident, FuzzedDataProvider& input) {
  const auto key = input.PickValueInArray(
      {preference::refreshInterval.key, preference::trackPerProcess.key,
       preference::slowSpeedThreshold.key, preference::highLatencyThreshold.key,
       preference::showNotifications.key, preference::showUploadInMenubar.key});
  if (input.ConsumeIntegralInRange(0, 7) == 0) {
    resident.preferences.remove(key);
  } else {
    resident.preferences.set(key, anyValue(input));
  }
}

void changeMachine(test::FakeMachine& machine, FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange(0, 6)) {
  case 0:
    machine.bytes().bytesIn += input.ConsumeIntegralInRange<std::int64_t>(0, mostMoved);
    break;
  case 1:
    machine.bytes() = {input.ConsumeIntegralInRange<std::int64_t>(0, mostMoved), 0};
    break;
  case 2:
    machine.configuration.primary = input.ConsumeRandomLengthString(16);
    break;
  case 3:
    machine.http.body = input.ConsumeRandomLengthString(64);
    break;
  case 4: {
    std::string output = input.ConsumeRandomLengthString(120);
    machine.children.usual.output = fuzz::maySumOverflow(output) ? "" : std::move(output);
    break;
  }
  case 5:
    machine.configuration.wifiName.reset();
    machine.configuration.servers.reset();
    break;
  default:
    machine.paths.report(
        {input.ConsumeBool(), input.ConsumeBool(), input.ConsumeBool(), input.ConsumeBool()});
    break;
  }
}

void checkConnection(const ConnectionInfo& info) {
  for (const auto* text : {&info.networkName, &info.interfaceName, &info.ipAddress, &info.dns}) {
    require(!text->empty());
    fuzz::requireShowable(*text);
  }
  require(isUtf8(info.publicIP));
}

void check(Resident& resident) {
  checkConnection(resident.delegate.networkMonitor().connectionInfo.get());
  const BandwidthSampler& sampler = resident.delegate.bandwidthSampler();
  require(sampler.snapshots.get().size() <= 300);
  require(sampler.currentDownloadBytesPerSec.get() >= 0);
  require(std::isfinite(sampler.latencyMs.get()));
  require(sampler.packetLossPercent.get() >= 0.0 && sampler.packetLossPercent.get() <= 100.0);
  const auto& processes = resident.delegate.processTracker().processes.get();
  require(processes.size() <= 10);
  for (const ProcessUsage& process : processes) {
    require(isUtf8(process.name) && process.usagePercent >= 0.0 && process.usagePercent <= 1.0);
  }
  for (const NotificationRequest& notice : resident.center.requests) {
    fuzz::requireShowable(notice.title);
    fuzz::requireShowable(notice.body);
  }
  const MenubarLabel label(sampler, resident.delegate.networkMonitor(), resident.settings);
  fuzz::requireShowable(label.menubarString());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  Resident resident;
  resident.machine.bytes() = {};
  resident.delegate.applicationDidFinishLaunching();
  for (int step = 0; step < 24 && input.remaining_bytes() > 0; ++step) {
    if (input.ConsumeBool()) {
      changePreference(resident, input);
    } else {
      changeMachine(resident.machine, input);
    }
    if (input.ConsumeIntegralInRange(0, 5) == 0) {
      resident.delegate.speedTest().run();
    }
    resident.machine.scheduler.advance(0.25 * input.ConsumeIntegralInRange(0, 8));
    check(resident);
  }
  resident.delegate.applicationWillTerminate();
  return 0;
}
