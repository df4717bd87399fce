#pragma once

#include "ConnectivityModel.h"
#include "Dice.h"
#include "FaceReader.h"
#include "Findings.h"
#include "NoticeModel.h"
#include "NoticeServer.h"
#include "PanelHost.h"
#include "PanelModel.h"
#include "PathModel.h"
#include "PreferencesModel.h"
#include "Resident.h"
#include "SamplingModel.h"
#include "SimulatedBus.h"
#include "SimulatedTools.h"
#include "ToolModel.h"
#include "Traffic.h"
#include "VirtualLoop.h"
#include "VirtualProcesses.h"
#include "VirtualTime.h"
#include "WindowsProgram.h"
#include "alerts/NotificationService.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "settings/AppSettings.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMachine.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {

/// The whole resident on a virtual machine and desktop, with models that check every published
/// value, every notice, and everything it shows and requests.
class Simulation {
public:
  explicit Simulation(std::uint64_t seed);
  ~Simulation();
  Simulation(Simulation&&) = delete;

  /// Makes the program; it may be launched later.
  void make();
  /// Launches the program. Call it once.
  void launch();
  /// Ends the session.
  void terminate();
  void destroy();

  [[nodiscard]] bool isMade() const { return m_resident != nullptr; }
  [[nodiscard]] bool isLaunched() const { return m_isLaunched; }
  /// Whether the program was asked to end since it was made.
  [[nodiscard]] bool isAskedToEnd() const { return m_isAskedToEnd; }

  /// Reports a path, changed or not, as no kernel would.
  void report(const PathReport& path);
  /// The machine's path, its gateway or DNS servers are different from now on.
  void become(const ObservedPath& path);
  [[nodiscard]] const ObservedPath& path() const { return m_actual; }
  /// The login manager announces that the machine is about to sleep, or awake again.
  void setSleeping(bool isSleeping);
  void askForSpeedTest();
  /// The user sets a preference in the windows.
  void prefer(const std::string& key, const PreferenceValue& value);
  /// Whether the disk takes no more.
  bool isDiskFull = false;
  [[nodiscard]] int refusals() const { return m_refusals; }

  /// Bus, panel, notification server and windows work normally from now on.
  void calmDesktop();
  /// Clears the models' records, which would count as growth of the program. Call it when nothing
  /// is under way.
  void forgetDesktop();

  /// Lets virtual time pass, then checks that nothing is missing.
  void advance(Seconds span);

  Dice dice; // for the events, not for the order of tasks
  FakeMachine machine;
  VirtualTime time{machine.scheduler};
  Findings findings{machine.scheduler};
  std::unique_ptr<WorkQueue> worldQueue = machine.scheduler.makeSerialQueue("world");
  VirtualLoop loop{machine.scheduler};
  VirtualLoop world{machine.scheduler, *worldQueue};
  PreferencesModel preferences{machine.scheduler, dice, findings};
  PreferencesFile store{preferences.path(), loop};
  FakeLoginItem loginItem;
  AppSettings settings{store, loginItem};
  SamplingModel sampling{machine.scheduler, machine.clock, findings};
  ToolModel toolModel{machine.scheduler, findings};
  SimulatedTools tools{*worldQueue, dice, findings, sampling, toolModel};
  WindowsProgram windows{machine.scheduler, world, dice, findings};
  VirtualProcesses processes{[this](const auto& process) { return play(process); }};
  ConnectivityModel connectivity{machine.scheduler, findings};
  PathModel paths{machine.scheduler, findings};
  NoticeModel notices{machine.clock, store, findings};
  PanelModel panel{settings, store, findings};
  Traffic traffic{machine.scheduler, [this](const auto& counts) { sampling.reads(counts); }};
  SimulatedBus bus{machine.scheduler, world, findings};
  PanelHost host{bus, world, dice, findings};
  NoticeServer noticeServer{bus, machine.clock, findings};
  FaceReader reader{bus, world, findings};

private:
  /// Passes the program's notices to the models and to the real implementation.
  struct Center final : NotificationCenter {
    explicit Center(Simulation& simulation) : world(simulation) {}
    void requestAuthorization() override { world.notices.requestAuthorization(); }
    void add(NotificationRequest request) override;
    Simulation& world;
  };

  [[nodiscard]] bool play(const VirtualProcesses::Pointer& process);
  void watchBefore();
  void watchAfter();
  void observePath();
  void lookedUp(const std::optional<std::string>& body);
  void checkDetails();
  void checkDesktop();

  Center m_center{*this};
  NotificationService m_notifications{settings, machine.clock, m_center};
  std::unique_ptr<Resident> m_resident;
  bool m_isLaunched = false;
  bool m_isAskedToEnd = false;
  Ticks m_madeAt = Ticks::zero();
  std::int64_t m_publishedBefore = 0; // before the launch
  int m_refusals = 0;                 // of preferences
  ObservedPath m_actual;
  std::optional<PathReport> m_path; // reported last
  std::unique_ptr<PathReporter> m_reporter;
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell::test
