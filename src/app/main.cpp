#include "app/AppDelegate.h"
#include "app/ResidentShell.h"
#include "base/ThreadScheduler.h"
#include "connectivity/MonitorState.h"
#include "platform/Platform.h"
#include "platform/linux/AutostartLoginItem.h"
#include "platform/linux/ConfigurationDirectory.h"
#include "platform/linux/EventLoop.h"
#include "platform/linux/LinuxChildProcess.h"
#include "platform/linux/LinuxConfigurationStore.h"
#include "platform/linux/LinuxInterfaceCounters.h"
#include "platform/linux/PreferencesFile.h"
#include "platform/linux/RouteSocket.h"
#include "platform/linux/SessionBus.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/TerminationSignals.h"
#include "settings/AppSettings.h"

using namespace tidewell;

int main() {
  EventLoop loop;
  const TerminationSignals signals(loop, [&loop] { loop.quit(); });

  const std::string configuration = configurationDirectory();
  PreferencesFile preferences(configuration + "/tidewell/preferences.toml", loop);
  AutostartLoginItem loginItem(configuration, runningProgram());
  AppSettings& settings = AppSettings::shared();
  settings.attach(preferences, loginItem);

  SystemClock clock;
  RouteSocket routes;
  LinuxInterfaceCounters counters(routes);
  LinuxConfigurationStore network(routes);
  LinuxChildProcess children;
  SessionBus bus(loop);

  {
    // Threads end before what they use, and services before the threads they post to.
    ThreadScheduler scheduler(loop);
    const Platform platform{scheduler, clock, counters, network, children};
    AppDelegate delegate(platform, settings, preferences);
    MonitorState monitor;
    const auto quit = [&loop] { loop.quit(); };
    ResidentShell shell(loop, bus, {delegate.bandwidthSampler(), monitor, settings, preferences},
                        {quit, quit});
    delegate.applicationDidFinishLaunching();
    loop.run();
    delegate.applicationWillTerminate();
    children.endAll();
  }
  settings.detach();
  return 0;
}
