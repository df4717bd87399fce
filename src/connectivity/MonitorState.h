#pragma once

#include "base/Published.h"
#include "connectivity/ConnectionInfo.h"

namespace tidewell {

/// What the connectivity monitor publishes.
struct MonitorState {
  /// Whether the machine is online. True until the first report.
  Published<bool> isConnected{true};
  /// The kind of link in use.
  Published<ConnectionInfo::InterfaceType> interfaceType{ConnectionInfo::InterfaceType::wifi};
  Published<ConnectionInfo> connectionInfo;
};

} // namespace tidewell
