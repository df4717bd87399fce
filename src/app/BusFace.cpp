#include "app/BusFace.h"

#include "app/BusValues.h"
#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "platform/linux/bus/SessionBus.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"

#include <cstdint>
#include <string>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* objectPath = "/com/halden/Tidewell";
constexpr const char* interfaceName = "com.halden.Tidewell";

} // namespace

BusFace::BusFace(WorkQueue& main, SessionBus& bus, const ResidentSources& sources, Actions actions)
    : m_actions(std::move(actions)), m_object(objectPath, interfaceName),
      m_changes(main, [this] { m_object.announce(); }) {
  describeMeasurements(sources);
  describeConnection(sources.monitor);
  describeResults(sources);
  describeRequests();
  watch(sources);
  m_lost = bus.onLost([this] {
    m_call.reset();
    m_object.disappear();
    m_bus = nullptr;
  });
  m_connected = bus.onConnected([this](sd_bus& connection) { appear(connection); });
}

void BusFace::describeMeasurements(const ResidentSources& sources) {
  SamplerState& sampler = sources.sampler;
  m_object.property("MenubarText", "s", [sources] {
    const MenubarLabel label(sources.sampler, sources.monitor, sources.settings);
    return BusValue(label.menubarString());
  });
  m_object.property("Status", "s",
                    [&] { return BusValue(std::string(rawValue(sampler.currentStatus()))); });
  m_object.property("DownloadBytesPerSec", "x",
                    [&] { return BusValue(sampler.currentDownloadBytesPerSec.get()); });
  m_object.property("UploadBytesPerSec", "x",
                    [&] { return BusValue(sampler.currentUploadBytesPerSec.get()); });
  m_object.property("LatencyMs", "d", [&] { return BusValue(sampler.latencyMs.get()); });
  m_object.property("JitterMs", "d", [&] { return BusValue(sampler.jitterMs.get()); });
  m_object.property("PacketLossPercent", "d",
                    [&] { return BusValue(sampler.packetLossPercent.get()); });
  m_object.silentProperty("Samples", busTypes::samples, [&](sd_bus_message& reply) {
    return appendSamples(reply, sampler.snapshots.get());
  });
  m_object.signal("SampleAdded", busTypes::sample);
}

void BusFace::describeConnection(MonitorState& monitor) {
  const auto detail = [&](const char* property, std::string ConnectionInfo::*field) {
    m_object.property(property, "s",
                      [&monitor, field] { return BusValue(monitor.connectionInfo.get().*field); });
  };
  m_object.property("IsConnected", "b", [&] { return BusValue(monitor.isConnected.get()); });
  m_object.property("InterfaceType", "s",
                    [&] { return BusValue(std::string(rawValue(monitor.interfaceType.get()))); });
  detail("NetworkName", &ConnectionInfo::networkName);
  detail("InterfaceName", &ConnectionInfo::interfaceName);
  detail("IpAddress", &ConnectionInfo::ipAddress);
  detail("PublicIp", &ConnectionInfo::publicIP);
  detail("Dns", &ConnectionInfo::dns);
}

void BusFace::describeResults(const ResidentSources& sources) {
  TrackerState& tracker = sources.tracker;
  SpeedTestState& speedTest = sources.speedTest;
  m_object.property(
      "Processes", busTypes::processes,
      [&](sd_bus_message& reply) { return appendProcesses(reply, tracker.processes.get()); },
      [&] { return BusValue(digestOf(tracker.processes.get())); });
  m_object.property("SpeedTestIsRunning", "b", [&] { return BusValue(speedTest.isRunning.get()); });
  m_object.property(
      "LastSpeedTest", busTypes::speedTests,
      [&](sd_bus_message& reply) { return appendSpeedTest(reply, speedTest.lastResult.get()); },
      [&] {
        const auto& result = speedTest.lastResult.get();
        return BusValue(result ? result->timestamp : 0.0);
      });
}

void BusFace::describeRequests() {
  const auto request = [this](const char* method, std::function<void()> action) {
    m_object.method(method, "", "", [action = std::move(action)](auto&, auto&) {
      action();
      return 0;
    });
  };
  const auto window = [this](WindowRequest::Kind which, const char* text) {
    return [this, which, text] {
      m_object.emit("WindowRequested", [text](sd_bus_message& signal) {
        return sd_bus_message_append(&signal, "s", text);
      });
      m_actions.openWindow(which);
    };
  };
  m_object.signal("WindowRequested", "s");
  request("OpenPanel", window(WindowRequest::Kind::panel, "panel"));
  request("OpenDetail", window(WindowRequest::Kind::detail, "detail"));
  request("OpenSettings", window(WindowRequest::Kind::settings, "settings"));
  request("RunSpeedTest", m_actions.runSpeedTest);
  request("Quit", m_actions.quit);
}

void BusFace::watch(const ResidentSources& sources) {
  m_changes.watch(sources.monitor.isConnected);
  m_changes.watch(sources.monitor.connectionInfo);
  m_changes.watch(sources.tracker.processes);
  m_changes.watch(sources.speedTest.isRunning);
  m_changes.watch(sources.speedTest.lastResult);
  m_samples = sources.sampler.snapshots.subscribe([this](const SnapshotList& samples) {
    announceSample(samples);
    m_changes.mark();
  });
}

void BusFace::appear(sd_bus& bus) {
  m_bus = &bus;
  m_object.appear(bus);
  const auto answered = [](sd_bus_message* reply, void* self, sd_bus_error*) {
    static_cast<BusFace*>(self)->nameAnswered(*reply);
    return 0;
  };
  m_call = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_request_name_async(&bus, slot, name, 0, answered, this);
  });
}

void BusFace::nameAnswered(sd_bus_message& reply) {
  // The bus's answers: 1 the name is ours, 3 it exists and we do not wait for it.
  constexpr std::uint32_t exists = 3;
  std::uint32_t answer = 0;
  if (sd_bus_message_is_method_error(&reply, nullptr) != 0 ||
      sd_bus_message_read(&reply, "u", &answer) < 0 || answer != exists) {
    return;
  }
  const auto asked = [](sd_bus_message*, void* self, sd_bus_error*) {
    static_cast<BusFace*>(self)->m_actions.alreadyRunning();
    return 0;
  };
  m_call = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_method_async(m_bus, slot, name, objectPath, interfaceName, "OpenPanel",
                                    asked, this, nullptr);
  });
}

void BusFace::announceSample(const SnapshotList& samples) {
  if (!samples.empty()) {
    m_object.emit("SampleAdded",
                  [&](sd_bus_message& signal) { return appendSample(signal, *samples.back()); });
  }
}

} // namespace tidewell
