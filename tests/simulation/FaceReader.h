#pragma once

#include "Findings.h"
#include "SimulatedBus.h"

#include <cstdint>
#include <map>
#include <string>

namespace tidewell {

struct MonitorState;
struct SamplerState;
struct SpeedTestState;

} // namespace tidewell

namespace tidewell::test {

/// A client of the program's bus interface: it reads everything once and then follows the signals.
/// Its values must match the published ones.
class FaceReader {
public:
  FaceReader(SimulatedBus& bus, EventLoop& world, Findings& findings);

  /// The program ends; calls in progress need no reply.
  void release() { lose(); }

  /// Calls a method, such as "OpenPanel"; a reply must come.
  void ask(const char* method);

  /// Compares the received values with the published ones.
  void check(const SamplerState& sampler, const MonitorState& monitor,
             const SpeedTestState& speedTest, const std::string& menubarText);
  /// This many samples were published since the program began.
  void checkSamples(std::int64_t published);

  [[nodiscard]] int readings() const { return m_readings; }

private:
  void readAll();
  void lose();
  void heard(sd_bus_message& signal);
  void keep(sd_bus_message& values);

  SimulatedBus& m_bus;
  EventLoop& m_world;
  Findings& m_findings;
  std::map<std::string, std::string> m_values;
  bool m_isRead = false;
  int m_life = 0;
  std::int64_t m_samples = 0; // received on this connection
  std::int64_t m_ahead = -1;  // published before it, once known
  int m_readings = 0;
};

} // namespace tidewell::test
