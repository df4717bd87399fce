#include "alerts/NotificationService.h"
#include "app/AppDelegate.h"
#include "app/ExtensionHint.h"
#include "app/ResidentShell.h"
#include "app/WindowsProcess.h"
#include "base/TaskQueue.h"
#include "base/TextPieces.h"
#include "connectivity/NetworkMonitor.h"
#include "platform/Platform.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "platform/linux/bus/LoginSession.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/bus/SystemSignals.h"
#include "platform/linux/files/AutostartLoginItem.h"
#include "platform/linux/files/Catalogue.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/loop/EpollLoop.h"
#include "platform/linux/loop/SystemClock.h"
#include "platform/linux/network/AddressText.h"
#include "platform/linux/network/DeviceTable.h"
#include "platform/linux/network/LinuxConfigurationStore.h"
#include "platform/linux/network/LinuxInterfaceAddresses.h"
#include "platform/linux/network/LinuxInterfaceCounters.h"
#include "platform/linux/network/LinuxPathMonitor.h"
#include "platform/linux/network/RouteSocket.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "platform/linux/process/HelperProgram.h"
#include "platform/linux/process/Keeper.h"
#include "platform/linux/process/LinuxChildProcess.h"
#include "platform/linux/process/LinuxHttpClient.h"
#include "platform/linux/process/NotificationSound.h"
#include "platform/linux/process/StartupPages.h"
#include "platform/linux/process/TerminationSignals.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestRunner.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace tidewell {
namespace {

// Startup samples and lookups have finished by then.
constexpr Seconds settled = 9.0;

/// Whether the reply to a lookup of the public address is one.
bool namesAddress(const std::optional<std::string>& body) { return body && isAddress(trim(*body)); }

/// The implementations of `Platform`.
struct Machine {
  Machine(EventLoop& loop, const std::string& program)
      : systemBus(loop, SessionBus::systemAddress()), configuration(loop, routes, systemBus),
        children(loop), http(loop, helperProgram(program, "publicAddress"),
                             [this](const auto& body) { paths.lookedUp(namesAddress(body)); }),
        paths(loop, routes, [this](bool isSatisfied) { http.setPathSatisfied(isSatisfied); }),
        signals(systemBus, {[this](bool isSleeping) { paths.setSleeping(isSleeping); },
                            [this] { paths.dnsServersChanged(); }}) {}

  SessionBus systemBus;
  SystemClock clock;
  RouteSocket routes;
  DeviceTable devices;
  LinuxInterfaceCounters counters{devices};
  LinuxConfigurationStore configuration;
  LinuxInterfaceAddresses addresses;
  LinuxChildProcess children;
  LinuxHttpClient http;
  LinuxPathMonitor paths;
  SystemSignals signals;
};

/// Runs until the program is asked to end. Later declarations are destroyed first: services before
/// the queues they post to, queues and their waiting tasks before what these use.
void serve(EpollLoop& loop, AppSettings& settings, PreferencesStore& preferences,
           const std::string& program) {
  const auto quit = [&loop] { loop.quit(); };
  Machine machine(loop, program);
  SessionBus bus(loop);
  LoopScheduler scheduler(loop);
  NotificationSound sound(loop, scheduler.background(),
                          helperProgram(program, "notificationSound"));
  DesktopNotifications center(bus, machine.clock, [&sound] { sound.play(); });
  NotificationService& notifications = NotificationService::shared();
  notifications.attach(settings, machine.clock, center);

  const Platform platform{scheduler,         machine.clock, machine.counters, machine.configuration,
                          machine.addresses, machine.paths, machine.http,     machine.children};
  AppDelegate delegate(platform, {settings, preferences, center, notifications});
  WindowsProcess windows(loop, helperProgram(program, "tidewell-windows"), program);
  ResidentShell shell(loop, bus,
                      {delegate.bandwidthSampler(), delegate.networkMonitor(),
                       delegate.processTracker(), delegate.speedTest(), settings, preferences},
                      {quit, quit, [&delegate] { delegate.speedTest().run(); },
                       [&windows](const WindowRequest& request) { windows.ask(request); }});
  const ExtensionHint hint(scheduler.main(), bus, settings, center,
                           ExtensionHint::placesFor(program, stateDirectory()),
                           [&shell] { return shell.hasFace(); });
  const LoginSession session(loop, quit);
  delegate.applicationDidFinishLaunching();
  loop.postAfter(settled, releaseStartupPages);
  loop.run();
  delegate.applicationWillTerminate();
  notifications.detach();
}

} // namespace
} // namespace tidewell

int main(int argumentCount, char** arguments) {
  using namespace tidewell;
  if (argumentCount == 2 && std::string_view(arguments[1]) == "--version") {
    return std::puts("tidewell " TIDEWELL_VERSION) < 0 ? 1 : 0;
  }
  if (argumentCount == 2 && arguments[1] == keepRunningOption) {
    if (const auto status = keepRunning()) {
      return *status;
    }
  }
  EpollLoop loop;
  const TerminationSignals signals(loop, [&loop] { loop.quit(); });
  const std::string program = runningProgram();
  loadCatalogue(catalogueDirectory(program));
  const std::string configuration = configurationDirectory();
  PreferencesFile preferences(configuration + "/tidewell/preferences.toml", loop);
  AutostartLoginItem loginItem(configuration, program);
  AppSettings& settings = AppSettings::shared();
  settings.attach(preferences, loginItem);
  serve(loop, settings, preferences, program);
  settings.detach();
  return 0;
}
