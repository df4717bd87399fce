#include "app/BusFace.h"

#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "platform/linux/SessionBus.h"
#include "sampling/SamplerState.h"

#include <string>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* objectPath = "/com/halden/Tidewell";
constexpr const char* interfaceName = "com.halden.Tidewell";

constexpr const char* sampleType = "dxxddd";

int appendSample(sd_bus_message& message, const NetworkSnapshot& sample) {
  return sd_bus_message_append(&message, sampleType, sample.timestamp(),
                               sample.downloadBytesPerSec(), sample.uploadBytesPerSec(),
                               sample.latencyMs(), sample.jitterMs(), sample.packetLossPercent());
}

int appendSamples(sd_bus_message& message, const SnapshotList& samples) {
  int result = sd_bus_message_open_container(&message, 'a', "(dxxddd)");
  for (const auto& sample : samples) {
    if (result >= 0) {
      result = sd_bus_message_open_container(&message, 'r', sampleType);
    }
    if (result >= 0) {
      result = appendSample(message, *sample);
    }
    if (result >= 0) {
      result = sd_bus_message_close_container(&message);
    }
  }
  return result < 0 ? result : sd_bus_message_close_container(&message);
}

} // namespace

BusFace::BusFace(WorkQueue& main, SessionBus& bus, SamplerState& sampler, MonitorState& monitor,
                 const AppSettings& settings, Actions actions)
    : m_actions(std::move(actions)), m_object(objectPath, interfaceName),
      m_changes(main, [this] { m_object.announce(); }) {
  describe(sampler, monitor, settings);
  m_changes.watch(monitor.isConnected);
  m_samples = sampler.snapshots.subscribe([this](const SnapshotList& samples) {
    announceSample(samples);
    m_changes.mark();
  });
  m_lost = bus.onLost([this] {
    m_nameRequest.reset();
    m_object.disappear();
  });
  m_connected = bus.onConnected([this](sd_bus& connection) { appear(connection); });
}

void BusFace::describe(SamplerState& sampler, MonitorState& monitor, const AppSettings& settings) {
  m_object.property("MenubarText", "s", [&] {
    return BusValue(MenubarLabel(sampler, monitor, settings).menubarString());
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
  m_object.silentProperty("Samples", "a(dxxddd)", [&](sd_bus_message& reply) {
    return appendSamples(reply, sampler.snapshots.get());
  });
  m_object.signal("SampleAdded", sampleType);
  m_object.method("Quit", "", "", [this](sd_bus_message&, sd_bus_message&) {
    m_actions.quit();
    return 0;
  });
}

void BusFace::appear(sd_bus& bus) {
  m_object.appear(bus);
  const auto answered = [](sd_bus_message* reply, void* self, sd_bus_error*) {
    static_cast<BusFace*>(self)->nameAnswered(*reply);
    return 0;
  };
  m_nameRequest = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_request_name_async(&bus, slot, name, 0, answered, this);
  });
}

void BusFace::nameAnswered(sd_bus_message& reply) const {
  // The bus's answers: 1 the name is ours, 3 it exists and we do not wait for it.
  constexpr std::uint32_t exists = 3;
  std::uint32_t answer = 0;
  if (sd_bus_message_is_method_error(&reply, nullptr) == 0 &&
      sd_bus_message_read(&reply, "u", &answer) >= 0 && answer == exists) {
    m_actions.alreadyRunning();
  }
}

void BusFace::announceSample(const SnapshotList& samples) {
  if (!samples.empty()) {
    m_object.emit("SampleAdded",
                  [&](sd_bus_message& signal) { return appendSample(signal, *samples.back()); });
  }
}

} // namespace tidewell
