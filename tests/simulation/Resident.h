#pragma once

#include "app/AppDelegate.h"
#include "app/ResidentShell.h"
#include "app/WindowsProcess.h"
#include "platform/Platform.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/process/LinuxChildProcess.h"
#include "platform/linux/process/LinuxHttpClient.h"
#include "platform/linux/process/NotificationSound.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

/// The resident's surroundings on its machine. Borrowed.
struct Surroundings {
  EventLoop& loop;
  Scheduler& scheduler;
  Clock& clock;
  InterfaceCounters& counters;
  ConfigurationStore& configuration;
  InterfaceAddresses& addresses;
  PathMonitor& paths;
  AppSettings& settings;
  PreferencesStore& preferences;
  NotificationCenter& center;
  NotificationService& notifications;
  std::string busAddress;
  std::function<void(ChildProcess::Id child)> onTerminate;
  LinuxHttpClient::Observer onLookup;
};

/// The program's children. Reports each call of `terminate`.
class WatchedChildren final : public ChildProcess {
public:
  WatchedChildren(EventLoop& loop, std::function<void(Id child)> onTerminate)
      : m_children(loop), m_onTerminate(std::move(onTerminate)) {}
  [[nodiscard]] Async<std::optional<std::string>>
  run(ToolCall call, std::function<void(Id child)> launched) override {
    return m_children.run(std::move(call), std::move(launched));
  }
  void terminate(Id child) override {
    m_onTerminate(child);
    m_children.terminate(child);
  }

private:
  LinuxChildProcess m_children;
  std::function<void(Id child)> m_onTerminate;
};

/// The program as in its main function, but for its loop and kernel interfaces.
class Resident {
public:
  /// `quit` is called when the program is asked to end, `asked` with each request to the windows'
  /// process, `askedForSpeedTest` when item or bus request one.
  Resident(const Surroundings& machine, std::function<void()> quit,
           std::function<void(const WindowRequest& request)> asked,
           std::function<void()> askedForSpeedTest);

  /// Destroys everything but what background tasks may still use.
  void retire();

  WatchedChildren children;
  LinuxHttpClient http;
  SessionBus bus;
  NotificationSound sound;
  DesktopNotifications notices;
  Platform platform;
  std::unique_ptr<AppDelegate> ownDelegate;
  AppDelegate& delegate;
  std::unique_ptr<WindowsProcess> windows;
  std::unique_ptr<ResidentShell> shell;
};

} // namespace tidewell::test
