#include "FaceReader.h"

#include "connectivity/MonitorState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"

#include <bit>
#include <cstring>

namespace tidewell::test {

namespace {

constexpr const char* path = "/com/halden/Tidewell";
constexpr const char* interface = "com.halden.Tidewell";

std::string textOf(double value) { return std::to_string(std::bit_cast<std::uint64_t>(value)); }
std::string textOf(bool value) { return value ? "true" : "false"; }

/// A variant's basic value as text; empty for any other.
std::string readValue(sd_bus_message& message) {
  const char* type = nullptr;
  char kind = 0;
  std::string text;
  sd_bus_message_peek_type(&message, &kind, &type);
  if (type == nullptr || std::strlen(type) != 1 || std::strchr("sxdb", *type) == nullptr) {
    sd_bus_message_skip(&message, "v");
    return text;
  }
  sd_bus_message_enter_container(&message, 'v', type);
  if (*type == 's') {
    text = nextText(message);
  } else if (*type == 'x') {
    std::int64_t value = 0;
    sd_bus_message_read(&message, "x", &value);
    text = std::to_string(value);
  } else if (*type == 'd') {
    double value = 0.0;
    sd_bus_message_read(&message, "d", &value);
    text = textOf(value);
  } else {
    int value = 0;
    sd_bus_message_read(&message, "b", &value);
    text = textOf(value != 0);
  }
  sd_bus_message_exit_container(&message);
  return text;
}

} // namespace

FaceReader::FaceReader(SimulatedBus& bus, EventLoop& world, Findings& findings)
    : m_bus(bus), m_world(world), m_findings(findings) {
  bus.listen([this](sd_bus_message& signal) { heard(signal); });
  bus.greet([this] {
    lose();
    m_world.post([this, life = m_life] {
      if (life == m_life) {
        readAll();
      }
    });
  });
  bus.serve("a reader", {}, [this] { lose(); });
}

void FaceReader::lose() {
  ++m_life;
  m_isRead = false;
  m_values.clear();
  m_samples = 0;
  m_ahead = -1;
}

void FaceReader::readAll() {
  m_bus.call(
      path, propertiesInterface, "GetAll",
      [](sd_bus_message& call) { sd_bus_message_append(&call, "s", interface); },
      [this, life = m_life](sd_bus_message* reply) {
        if (reply != nullptr && life == m_life) {
          m_findings.require(sd_bus_message_is_method_error(reply, nullptr) == 0,
                             "the program's properties");
          keep(*reply);
          m_isRead = true;
          ++m_readings;
        }
      });
}

void FaceReader::keep(sd_bus_message& values) {
  sd_bus_message_enter_container(&values, 'a', "{sv}");
  while (sd_bus_message_enter_container(&values, 'e', "sv") > 0) {
    const std::string name = nextText(values);
    m_values[name] = readValue(values);
    sd_bus_message_exit_container(&values);
  }
  sd_bus_message_exit_container(&values);
}

void FaceReader::heard(sd_bus_message& signal) {
  if (std::strcmp(sd_bus_message_get_path(&signal), path) != 0) {
    return;
  }
  const std::string member = sd_bus_message_get_member(&signal);
  if (member == "SampleAdded") {
    ++m_samples;
  } else if (member == "PropertiesChanged" && nextText(signal) == interface) {
    keep(signal);
  }
}

void FaceReader::ask(const char* method) {
  m_bus.call(path, interface, method, {}, [this, method, life = m_life](sd_bus_message* reply) {
    m_findings.require(reply == nullptr || life != m_life ||
                           sd_bus_message_is_method_error(reply, nullptr) == 0,
                       "a request over the bus is refused:", method);
  });
}

void FaceReader::check(const SamplerState& sampler, const MonitorState& monitor,
                       const SpeedTestState& speedTest, const std::string& menubarText) {
  if (!m_isRead || !m_bus.isServing() || m_bus.pending() > 0) {
    return;
  }
  const auto same = [this](const char* name, const std::string& expected) {
    m_findings.require(m_values[name] == expected, "what the bus was told,", name, m_values[name],
                       "instead of", expected);
  };
  same("MenubarText", menubarText);
  same("Status", std::string(rawValue(sampler.currentStatus())));
  same("DownloadBytesPerSec", std::to_string(sampler.currentDownloadBytesPerSec.get()));
  same("UploadBytesPerSec", std::to_string(sampler.currentUploadBytesPerSec.get()));
  same("LatencyMs", textOf(sampler.latencyMs.get()));
  same("JitterMs", textOf(sampler.jitterMs.get()));
  same("PacketLossPercent", textOf(sampler.packetLossPercent.get()));
  same("IsConnected", textOf(monitor.isConnected.get()));
  same("InterfaceType", std::string(rawValue(monitor.interfaceType.get())));
  same("InterfaceName", monitor.connectionInfo.get().interfaceName);
  same("PublicIp", monitor.connectionInfo.get().publicIP);
  same("SpeedTestIsRunning", textOf(speedTest.isRunning.get()));
}

void FaceReader::checkSamples(std::int64_t published) {
  if (!m_isRead || !m_bus.isServing()) {
    return;
  }
  if (m_ahead < 0) {
    m_ahead = published - m_samples;
  }
  m_findings.require(m_samples == published - m_ahead, "samples told over the bus:", m_samples,
                     "instead of", published - m_ahead);
}

} // namespace tidewell::test
