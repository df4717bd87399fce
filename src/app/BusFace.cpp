#include "app/BusFace.h"

#include "app/AttachedFaces.h"
#include "bus/ResidentInterface.h"
#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "platform/linux/bus/SessionBus.h"
#include "processes/TrackerState.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {
namespace {

namespace face = residentInterface;

constexpr BusService ownService{face::name, face::path};

// Values as sd-bus takes them.
const char* plain(const std::string& text) { return text.c_str(); }
template <class Value> Value plain(Value value) { return value; }

template <class Value> int appendValue(sd_bus_message& message, const Value& value) {
  const std::string type(1, face::typeCode<Value>);
  return sd_bus_message_append(&message, type.c_str(), plain(value));
}

template <class Record> int appendFields(sd_bus_message& message, const Record& record) {
  const auto append = [&](auto... field) {
    return sd_bus_message_append(&message, face::signatureOf<Record>().c_str(),
                                 plain(std::invoke(field, record))...);
  };
  return std::apply(append, face::fieldsOf<Record>);
}

/// Appends a list of structures; `recordOf` gives the record of an element.
template <class Record>
int appendList(sd_bus_message& message, const auto& elements, const auto& recordOf) {
  const std::string fields = face::signatureOf<Record>();
  BusWriter writer(message);
  writer.open('a', ("(" + fields + ")").c_str());
  for (const auto& element : elements) {
    writer.open('r', fields.c_str());
    writer.step([&] { return appendFields<Record>(message, recordOf(element)); }).close();
  }
  return writer.close().result();
}

int appendSamples(sd_bus_message& message, const SnapshotList& samples) {
  return appendList<NetworkSnapshot>(
      message, samples, [](const auto& sample) -> auto& { return *sample; });
}

int appendProcesses(sd_bus_message& message, const std::vector<ProcessUsage>& processes) {
  return appendList<ProcessUsage>(message, processes, std::identity());
}

int appendSpeedTest(sd_bus_message& message, const std::optional<SpeedTestResult>& result) {
  const std::span list(result ? &*result : nullptr, result ? 1U : 0U);
  return appendList<SpeedTestResult>(message, list, std::identity());
}

/// Adds a property of a plain type to the object.
template <class Value, class Read>
void publish(BusObject& object, const face::Property<Value>& property, Read read) {
  object.property<Value>(property.name, {face::typeCode<Value>}, std::move(read),
                         &appendValue<Value>);
}

} // namespace

BusFace::BusFace(SessionBus& bus, const ResidentSources& sources, const ResidentActions& actions,
                 AttachedFaces& faces)
    : m_actions(actions), m_object(face::path, face::name) {
  describeMeasurements(sources);
  describeConnection(sources.monitor);
  describeResults(sources);
  describeMethods();
  faces.describe(m_object);
  m_samples = sources.sampler.snapshots.subscribe(
      [this](const SnapshotList& samples) { announceSample(samples); });
  m_lost = bus.onLost([this] {
    m_call.reset();
    m_object.disappear();
  });
  m_connected = bus.onConnected([this](sd_bus& connection) { appear(connection); });
}

void BusFace::describeMeasurements(const ResidentSources& sources) {
  const SamplerState& sampler = sources.sampler;
  publish(m_object, face::menubarText, [sources] {
    return MenubarLabel(sources.sampler, sources.monitor, sources.settings).menubarString();
  });
  publish(m_object, face::status,
          [&sampler] { return std::string(rawValue(sampler.currentStatus())); });
  std::vector<std::string> arguments = {"time"};
  face::forEachMetric([&](const auto& metric) {
    arguments.emplace_back(metric.argument);
    publish(m_object, metric.property,
            [&sampler, &value = sampler.*metric.newest] { return value.get(); });
  });
  m_object.silentProperty(
      face::samples.name, face::listSignatureOf<NetworkSnapshot>(),
      [&](sd_bus_message& reply) { return appendSamples(reply, sampler.snapshots.get()); });
  m_object.signal(face::sampleAdded, face::signatureOf<NetworkSnapshot>(), arguments);
}

void BusFace::describeConnection(const MonitorState& monitor) {
  publish(m_object, face::isConnected, [&] { return monitor.isConnected.get(); });
  publish(m_object, face::interfaceType,
          [&] { return std::string(rawValue(monitor.interfaceType.get())); });
  for (const face::Detail& detail : face::details) {
    publish(m_object, detail.property,
            [&, field = detail.field] { return monitor.connectionInfo.get().*field; });
  }
}

void BusFace::describeResults(const ResidentSources& sources) {
  const TrackerState& tracker = sources.tracker;
  const SpeedTestState& speedTest = sources.speedTest;
  m_object.property<std::vector<ProcessUsage>>(
      face::processes.name, face::listSignatureOf<ProcessUsage>(),
      [&] { return tracker.processes.get(); }, &appendProcesses);
  publish(m_object, face::speedTestIsRunning, [&] { return speedTest.isRunning.get(); });
  m_object.property<std::optional<SpeedTestResult>>(
      face::lastSpeedTest.name, face::listSignatureOf<SpeedTestResult>(),
      [&] { return speedTest.lastResult.get(); }, &appendSpeedTest);
  m_object.property<std::optional<SpeedTestResult>>(
      face::lastMeasuredSpeedTest.name, face::listSignatureOf<SpeedTestResult>(),
      [&] { return speedTest.lastMeasured.get(); }, &appendSpeedTest);
  publish(m_object, face::speedTestFailure, [&] { return speedTest.failure.get(); });
}

void BusFace::describeMethods() {
  using Kind = WindowRequest::Kind;
  const auto method = [this](const char* name, std::function<void()> action) {
    m_object.method(name, "", "", [action = std::move(action)](auto&, auto&) {
      action();
      return 0;
    });
  };
  const auto open = [this](Kind kind, const char* window,
                           std::optional<WindowRequest::Point> point = {}) {
    m_object.emit(face::windowRequested, [window](sd_bus_message& signal) {
      return sd_bus_message_append(&signal, "s", window);
    });
    m_actions.ask({kind, {}, point, {}});
  };
  const auto opens = [open](Kind kind, const char* window) {
    return [open, kind, window] { open(kind, window); };
  };
  m_object.signal(face::windowRequested, "s", {"window"});
  method(face::openPanel, opens(Kind::panel, "panel"));
  method(face::openDetail, opens(Kind::detail, "detail"));
  method(face::openSettings, opens(Kind::settings, "settings"));
  method(face::runSpeedTest, m_actions.runSpeedTest);
  method(face::quit, m_actions.quit);
  m_object.method(face::openPanelAt, "ii", "", [open](sd_bus_message& call, auto&) {
    WindowRequest::Point point;
    const int result = sd_bus_message_read(&call, "ii", &point.x, &point.y);
    if (result >= 0) {
      open(Kind::panel, "panel", point);
    }
    return result;
  });
}

void BusFace::appear(sd_bus& bus) {
  constexpr std::uint32_t doNotQueue = 4;
  m_object.appear(bus);
  m_call = callMethod(
      bus, busDaemon, "RequestName", [this, &bus](auto* reply) { nameAnswered(bus, reply); }, "su",
      face::name, doNotQueue);
}

void BusFace::nameAnswered(sd_bus& bus, sd_bus_message* reply) {
  constexpr std::uint32_t exists = 3; // another program owns the name
  std::uint32_t answer = 0;
  if (reply != nullptr && sd_bus_message_read(reply, "u", &answer) > 0 && answer == exists) {
    m_call = callMethod(bus, ownService, face::openPanel,
                        [this](auto* /*reply*/) { m_actions.alreadyRunning(); });
  }
}

void BusFace::announceSample(const SnapshotList& samples) {
  if (!samples.empty()) {
    m_object.emit(face::sampleAdded,
                  [&](sd_bus_message& signal) { return appendFields(signal, *samples.back()); });
  }
}

} // namespace tidewell
