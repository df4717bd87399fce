#pragma once

#include "connectivity/ConnectionInfo.h"
#include "processes/ProcessUsage.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <tuple>
#include <type_traits>

/// The resident's interface on the session bus: names, types and where the values are kept. The
/// resident builds its object from it and the windows' process reads by it. docs/dbus.md explains
/// the meaning of each member.
namespace tidewell::residentInterface {

/// The name of the service and of its interface.
inline constexpr const char* name = "com.halden.Tidewell";
inline constexpr const char* path = "/com/halden/Tidewell";

/// A property of a plain type.
template <class Value> struct Property { const char* name; };
/// A property that is a list of structures, each with the fields of a record (`fieldsOf`).
template <class Record> struct ListProperty { const char* name; };

inline constexpr Property<std::string> menubarText{"MenubarText"};
inline constexpr Property<std::string> status{"Status"};
inline constexpr ListProperty<NetworkSnapshot> samples{"Samples"}; // changes by `sampleAdded`
inline constexpr Property<bool> isConnected{"IsConnected"};
inline constexpr Property<std::string> interfaceType{"InterfaceType"};
inline constexpr ListProperty<ProcessUsage> processes{"Processes"};
inline constexpr Property<bool> speedTestIsRunning{"SpeedTestIsRunning"};
inline constexpr ListProperty<SpeedTestResult> lastSpeedTest{"LastSpeedTest"}; // none or one
inline constexpr ListProperty<SpeedTestResult> lastMeasuredSpeedTest{"LastMeasuredSpeedTest"};
inline constexpr Property<std::string> speedTestFailure{"SpeedTestFailure"};

/// A property that is a text of the connection's details.
struct Detail {
  Property<std::string> property;
  std::string ConnectionInfo::*field;
};
inline constexpr std::array<Detail, 5> details = {{
    {{"NetworkName"}, &ConnectionInfo::networkName},
    {{"InterfaceName"}, &ConnectionInfo::interfaceName},
    {{"IpAddress"}, &ConnectionInfo::ipAddress},
    {{"PublicIp"}, &ConnectionInfo::publicIP},
    {{"Dns"}, &ConnectionInfo::dns},
}};

/// A number that every sample has: an argument of `sampleAdded`, and a property with the newest.
template <class Value> struct Metric {
  const char* argument;
  Property<Value> property;
  Value (NetworkSnapshot::*ofSample)() const;
  Published<Value> SamplerState::*newest;
};
inline constexpr std::tuple metrics{
    Metric<std::int64_t>{"download",
                         {"DownloadBytesPerSec"},
                         &NetworkSnapshot::downloadBytesPerSec,
                         &SamplerState::currentDownloadBytesPerSec},
    Metric<std::int64_t>{"upload",
                         {"UploadBytesPerSec"},
                         &NetworkSnapshot::uploadBytesPerSec,
                         &SamplerState::currentUploadBytesPerSec},
    Metric<double>{"latency", {"LatencyMs"}, &NetworkSnapshot::latencyMs, &SamplerState::latencyMs},
    Metric<double>{"jitter", {"JitterMs"}, &NetworkSnapshot::jitterMs, &SamplerState::jitterMs},
    Metric<double>{"loss",
                   {"PacketLossPercent"},
                   &NetworkSnapshot::packetLossPercent,
                   &SamplerState::packetLossPercent},
};

/// Calls the function with each metric.
template <class Function> void forEachMetric(const Function& function) {
  std::apply([&](const auto&... metric) { (function(metric), ...); }, metrics);
}

/// The fields of a structure on the bus, in the order of the record's constructor.
template <class Record> inline constexpr auto fieldsOf = nullptr;
template <>
inline constexpr auto fieldsOf<NetworkSnapshot> = std::apply(
    [](const auto&... metric) {
      return std::tuple(&NetworkSnapshot::timestamp, metric.ofSample...);
    },
    metrics);
template <>
inline constexpr auto fieldsOf<ProcessUsage> = std::tuple(&ProcessUsage::id, &ProcessUsage::name,
                                                          &ProcessUsage::downloadBytesPerSec,
                                                          &ProcessUsage::uploadBytesPerSec,
                                                          &ProcessUsage::totalBytes,
                                                          &ProcessUsage::usagePercent);
template <>
inline constexpr auto fieldsOf<SpeedTestResult> = std::tuple(&SpeedTestResult::timestamp,
                                                             &SpeedTestResult::downloadMbps,
                                                             &SpeedTestResult::uploadMbps,
                                                             &SpeedTestResult::responsiveness);

/// The type of a field's value.
template <class Record, class Field>
using FieldValue = std::remove_cvref_t<std::invoke_result_t<Field, const Record&>>;

/// D-Bus type codes.
template <class Value> inline constexpr char typeCode = '\0';
template <> inline constexpr char typeCode<bool> = 'b';
template <> inline constexpr char typeCode<std::int32_t> = 'i';
template <> inline constexpr char typeCode<std::int64_t> = 'x';
template <> inline constexpr char typeCode<double> = 'd';
template <> inline constexpr char typeCode<std::string> = 's';

/// The signature of a record's fields, such as "dddx".
template <class Record> std::string signatureOf() {
  return std::apply(
      [](auto... field) { return std::string{typeCode<FieldValue<Record, decltype(field)>>...}; },
      fieldsOf<Record>);
}

/// The signature of a list of such records, such as "a(dddx)".
template <class Record> std::string listSignatureOf() { return "a(" + signatureOf<Record>() + ")"; }

/// A signal with the fields of the new sample.
inline constexpr const char* sampleAdded = "SampleAdded";
/// A signal with the name of a window: "panel", "detail" or "settings".
inline constexpr const char* windowRequested = "WindowRequested";

/// The kinds of the attached faces; changes are not announced.
inline constexpr const char* faces = "Faces";

// Methods without arguments.
inline constexpr const char* openPanel = "OpenPanel";
inline constexpr const char* openDetail = "OpenDetail";
inline constexpr const char* openSettings = "OpenSettings";
inline constexpr const char* runSpeedTest = "RunSpeedTest";
inline constexpr const char* quit = "Quit";
inline constexpr const char* detachFace = "DetachFace";

/// A method with the kind of the face.
inline constexpr const char* attachFace = "AttachFace";
/// A method with a point on the screen: x and y, as hosts of status items report clicks.
inline constexpr const char* openPanelAt = "OpenPanelAt";

} // namespace tidewell::residentInterface
