#pragma once

#include "BusPeer.h"
#include "Require.h"
#include "app/ResidentShell.h"
#include "base/Clock.h"
#include "connectivity/MonitorState.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"
#include "support/FakeLoginItem.h"
#include "support/FakePreferencesStore.h"

namespace tidewell::fuzz {

/// A clock that stands still.
class StandingClock final : public Clock {
public:
  [[nodiscard]] double now() const override { return 1e9; }
};

/// The resident's interface, item, menu and notices on a bus, with states set by the target.
struct ResidentOnBus {
  explicit ResidentOnBus(BusPeer& peer) : bus(loop, peer.address()) {
    peer.accept();
    peer.settle(loop);
    require(bus.connection() != nullptr);
  }

  /// Checks that a request reaches the windows' process unchanged.
  static void checkRequest(const WindowRequest& request) {
    const auto arrived = parseWindowRequest(messageOf(request));
    require(arrived && arrived->kind == request.kind && arrived->point == request.point);
    require(request.text.starts_with(arrived->text));
    require(arrived->token.empty() || arrived->token == request.token);
  }

  EpollLoop loop;
  SessionBus bus;
  StandingClock clock;
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  test::FakePreferencesStore preferences{loop};
  test::FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  DesktopNotifications notices{bus, clock, [] {}};
  ResidentShell shell{loop,
                      bus,
                      {sampler, monitor, tracker, speedTest, settings, preferences},
                      {[] {}, [] {}, [] {}, &ResidentOnBus::checkRequest}};
};

} // namespace tidewell::fuzz
