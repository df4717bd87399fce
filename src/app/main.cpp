#include "alerts/NotificationService.h"
#include "app/AppDelegate.h"
#include "app/ResidentShell.h"
#include "app/WindowsProcess.h"
#include "base/ThreadScheduler.h"
#include "connectivity/NetworkMonitor.h"
#include "platform/Platform.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "platform/linux/bus/LoginSession.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/files/AutostartLoginItem.h"
#include "platform/linux/files/ConfigurationDirectory.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/loop/SystemClock.h"
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

#include <string>

#include <malloc.h>

namespace tidewell {
namespace {

// By then the first samples, lookups and notices have gone their way.
constexpr Seconds settled = 9.0;

/// The machine, as the services see it.
struct Machine {
  explicit Machine(EventLoop& loop, const std::string& program)
      : http(helperProgram(program, "publicAddress")),
        paths(loop, routes, [this](bool isSatisfied) { http.setPathSatisfied(isSatisfied); }) {}

  /// Ends what would keep a worker waiting.
  void endWaits() {
    children.endAll();
    http.endAll();
  }

  SystemClock clock;
  RouteSocket routes;
  DeviceTable devices;
  LinuxInterfaceCounters counters{devices};
  LinuxConfigurationStore configuration{routes};
  LinuxInterfaceAddresses addresses;
  LinuxChildProcess children;
  LinuxHttpClient http;
  LinuxPathMonitor paths;
};

/// Runs until somebody asks the program to end. What is declared later goes first: services before
/// the threads they post to, threads before what they use.
void serve(EventLoop& loop, AppSettings& settings, PreferencesStore& preferences,
           const std::string& program) {
  const auto quit = [&loop] { loop.quit(); };
  Machine machine(loop, program);
  SessionBus bus(loop);
  ThreadScheduler scheduler(loop);
  NotificationSound sound(scheduler.background(), helperProgram(program, "notificationSound"));
  DesktopNotifications center(bus, machine.clock, [&sound] { sound.play(); });
  NotificationService& notifications = NotificationService::shared();
  notifications.attach(settings, machine.clock, center);

  const Platform platform{scheduler,         machine.clock, machine.counters, machine.configuration,
                          machine.addresses, machine.paths, machine.http,     machine.children};
  AppDelegate delegate(platform, {settings, preferences, center, notifications});
  WindowsProcess windows(loop, helperProgram(program, "tidewell-windows"));
  ResidentShell shell(loop, bus,
                      {delegate.bandwidthSampler(), delegate.networkMonitor(),
                       delegate.processTracker(), delegate.speedTest(), settings, preferences},
                      {quit, quit, [&delegate] { delegate.speedTest().run(); },
                       [&windows](const WindowRequest& request) { windows.ask(request); }});
  const LoginSession session(loop, quit);
  delegate.applicationDidFinishLaunching();
  loop.postAfter(settled, releaseStartupPages);
  loop.run();
  delegate.applicationWillTerminate();
  notifications.detach();
  machine.endWaits();
  sound.endAll();
}

} // namespace
} // namespace tidewell

int main(int argumentCount, char** arguments) {
  using namespace tidewell;
  if (argumentCount == 2 && arguments[1] == keepRunningOption) {
    if (const auto status = keepRunning()) {
      return *status;
    }
  }
#ifdef __GLIBC__
  // One pool of memory for all threads: they allocate little, and each further pool costs pages.
  mallopt(M_ARENA_MAX, 1);
#endif
  EventLoop loop;
  const TerminationSignals signals(loop, [&loop] { loop.quit(); });
  const std::string program = runningProgram();
  const std::string configuration = configurationDirectory();
  PreferencesFile preferences(configuration + "/tidewell/preferences.toml", loop);
  AutostartLoginItem loginItem(configuration, program);
  AppSettings& settings = AppSettings::shared();
  settings.attach(preferences, loginItem);
  serve(loop, settings, preferences, program);
  settings.detach();
  return 0;
}
