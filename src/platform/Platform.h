#pragma once

namespace tidewell {

class ChildProcess;
class Clock;
class ConfigurationStore;
class HttpClient;
class InterfaceAddresses;
class InterfaceCounters;
class PathMonitor;
class Scheduler;

/// The services' interfaces to the machine. Borrowed; outlives every service.
struct Platform {
  Scheduler& scheduler;
  Clock& clock;
  InterfaceCounters& counters;
  ConfigurationStore& configuration;
  InterfaceAddresses& addresses;
  PathMonitor& paths;
  HttpClient& http;
  ChildProcess& children;
};

} // namespace tidewell
