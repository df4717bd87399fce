#pragma once

#include "ConnectivityModel.h"
#include "Dice.h"
#include "Findings.h"
#include "NoticeModel.h"
#include "PanelModel.h"
#include "SamplingModel.h"
#include "SimulatedTools.h"
#include "ToolModel.h"
#include "Traffic.h"
#include "alerts/NotificationService.h"
#include "app/AppDelegate.h"
#include "settings/AppSettings.h"
#include "support/FakeDefaultsStore.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMachine.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tidewell::test {

/// The whole program, desktop and kernel aside, on a virtual machine, with the models that watch
/// every value it publishes and every notice it sends.
class Simulation {
public:
  explicit Simulation(std::uint64_t seed);

  /// Makes the program; it is launched later or never.
  void make();
  /// Launches the program that was made. Once.
  void launch();
  /// What the end of the session does.
  void terminate();
  void destroy();

  [[nodiscard]] bool isMade() const { return m_delegate != nullptr; }
  [[nodiscard]] bool isLaunched() const { return m_isLaunched; }

  /// Reports a path, changed or not.
  void report(const PathReport& path);
  void askForSpeedTest();

  /// Lets virtual time pass, then checks that nothing is missing.
  void advance(Seconds span);

  Dice dice; // for what happens, not for the order of tasks
  FakeMachine machine;
  Findings findings{machine.scheduler};
  FakeDefaultsStore store{machine.scheduler.main()};
  FakeLoginItem loginItem;
  AppSettings settings{store, loginItem};
  SamplingModel sampling{machine.scheduler, machine.clock, findings};
  ToolModel toolModel{machine.scheduler, findings};
  SimulatedTools tools{machine.scheduler, dice, findings, sampling, toolModel};
  ConnectivityModel connectivity{machine.scheduler, findings};
  NoticeModel notices{machine.clock, store, findings};
  PanelModel panel{settings, store, findings};
  Traffic traffic{machine.scheduler, [this](const auto& counts) { sampling.reads(counts); }};

private:
  void watchBefore();
  void watchAfter();

  NotificationService m_notifications{settings, machine.clock, notices};
  Platform m_platform{machine.scheduler, machine.clock, traffic,      machine.configuration,
                      machine.addresses, machine.paths, machine.http, tools};
  std::unique_ptr<AppDelegate> m_delegate;
  bool m_isLaunched = false;
  std::optional<PathReport> m_path;
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell::test
