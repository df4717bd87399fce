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

/// Another program that keeps itself up to date about what this one publishes on the bus: it reads
/// everything once and then goes by the signals. What it holds must be what is published.
class FaceReader {
public:
  FaceReader(SimulatedBus& bus, EventLoop& world, Findings& findings);

  /// The program ends: what it does not answer any more is no fault.
  void release() { lose(); }

  /// Asks for something, such as "OpenPanel"; an answer must come.
  void ask(const char* method);

  /// Holds what was heard against what is.
  void check(const SamplerState& sampler, const MonitorState& monitor,
             const SpeedTestState& speedTest, const std::string& menubarText);
  /// So many samples were published since the program began.
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
  std::int64_t m_samples = 0; // heard on this connection
  std::int64_t m_ahead = -1;  // published before it, once that is known
  int m_readings = 0;
};

} // namespace tidewell::test
