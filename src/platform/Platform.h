#pragma once

namespace tidewell {

class ChildProcess;
class Clock;
class ConfigurationStore;
class InterfaceCounters;
class Scheduler;

/// Everything that the services know of the machine. Borrowed; outlives every service.
struct Platform {
  Scheduler& scheduler;
  Clock& clock;
  InterfaceCounters& counters;
  ConfigurationStore& configuration;
  ChildProcess& children;
};

} // namespace tidewell
