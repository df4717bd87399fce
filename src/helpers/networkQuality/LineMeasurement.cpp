#include "helpers/networkQuality/LineMeasurement.h"

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

// More connections add no load, and take twice the processor time.
constexpr std::size_t mostConnections = 8;

// Below this, connections compete for few packets: a queue of ten packets cannot hold eight flows,
// and their losses would be attributed to the line. Well above half a megabit per second, so that a
// line of one megabit has two connections in every run.
constexpr double leastPerConnection = 80'000.0; // bytes per second

// Opened one after another, they would fill a long queue seconds later.
std::size_t affordableConnections(double bytesPerSecond) {
  const double affordable = std::floor(bytesPerSecond / leastPerConnection) + 1.0;
  return static_cast<std::size_t>(std::min(affordable, static_cast<double>(mostConnections)));
}

// A long queue fills long after the rate is steady, and varies within a single average.
constexpr std::size_t roundTripIntervals = 2 * averageDistance;

} // namespace

LineMeasurement::LineMeasurement(Seconds now, std::uint64_t bytes) : m_goodput(now, bytes) {}

void LineMeasurement::addForeign(Seconds now, const ForeignProbe& probe, double bytes) {
  m_roundTrips.addForeign(now, probe);
  m_pace.addProbe(probe.tcp, bytes);
}

void LineMeasurement::endInterval(Seconds now, std::uint64_t bytes) {
  m_goodput.endInterval(now, bytes);
  const auto means = m_goodput.intervals() >= averageDistance
                         ? m_roundTrips.since(now - averageDistance * interval)
                         : std::nullopt;
  m_responsiveness.add(means ? std::optional(means->perMinute()) : std::nullopt);
  if (!m_goodput.isSaturated()) {
    m_connections = std::max(m_connections, affordableConnections(m_goodput.current()));
  }
}

bool LineMeasurement::isDone() const {
  // Otherwise a long queue would be measured half full.
  return m_goodput.isSaturated() && m_responsiveness.isSteady() && !m_responsiveness.isDrifting() &&
         m_goodput.windowBytes() >= Goodput::leastWindow;
}

std::optional<LineResult> LineMeasurement::result() const {
  if (m_goodput.intervals() == 0) {
    return std::nullopt;
  }
  LineResult result;
  result.bytesPerSecond = m_goodput.capacity();
  result.roundTrips = m_roundTrips.since(m_goodput.loadedSince(roundTripIntervals));
  result.connections = m_connections;
  if (m_goodput.intervals() >= averageDistance) {
    result.confidence = isDone() ? Confidence::high : Confidence::medium;
  }
  return result;
}

} // namespace tidewell
