#include "helpers/networkQuality/LineRun.h"

#include "base/Translation.h"

#include <algorithm>

namespace tidewell {
namespace {

constexpr std::size_t mostFailures = 3;
constexpr Seconds tuning = 0.1;
constexpr Seconds longestPause = 1.0; // of a connection at the end

} // namespace

LineRun::LineRun(TransferLoop& loop, const Destination& destination, const TestServer& server,
                 Direction direction)
    : m_loop(loop), m_destination(destination), m_server(server), m_direction(direction),
      m_measurement(TransferLoop::now(), 0),
      m_foreign(loop, destination, server.smallDownload,
                [this](const ForeignProbe& probe, double bytes) {
                  m_measurement.addForeign(TransferLoop::now(), probe, bytes);
                }) {
  open();
}

void LineRun::run(Seconds deadline, const std::function<void(double)>& onInterval) {
  Seconds now = TransferLoop::now();
  Seconds tuneAt = now;
  Seconds intervalAt = now + LineMeasurement::interval;
  // What the line can afford is not known before.
  Seconds probeAt = intervalAt;
  while (!m_loop.isStopped() && now < deadline && !m_failure && !isDone(now)) {
    m_loop.serve(std::min({deadline, tuneAt, intervalAt, probeAt}));
    now = TransferLoop::now();
    replaceFailed();
    if (now >= tuneAt) {
      std::for_each(m_connections.begin(), m_connections.end(),
                    [now](const auto& connection) { connection->tune(now); });
      m_measurement.sample(now, moved());
      tuneAt = now + tuning;
    }
    if (now >= intervalAt) {
      endInterval(now);
      onInterval(m_measurement.result()->bytesPerSecond);
      intervalAt = std::max(intervalAt + LineMeasurement::interval, now);
      probeAt = std::min(probeAt, now + m_measurement.probeInterval());
    }
    if (now >= probeAt && !m_failure) {
      probe();
      probeAt = std::max(probeAt + m_measurement.probeInterval(), now);
    }
  }
}

bool LineRun::isDone(Seconds now) const {
  // A stalled connection does not count towards capacity.
  return m_measurement.isDone() &&
         std::all_of(m_connections.begin(), m_connections.end(), [now](const auto& connection) {
           return now - connection->silentSince() < longestPause;
         });
}

std::optional<LineResult> LineRun::result() const {
  return m_failure ? std::nullopt : m_measurement.result();
}

void LineRun::open() {
  m_connections.push_back(std::make_unique<LoadConnection>(
      m_loop, m_destination, m_server, m_direction,
      [this](Seconds roundTrip) { m_measurement.addSelf(TransferLoop::now(), roundTrip); }));
}

void LineRun::endInterval(Seconds now) {
  m_measurement.endInterval(now, moved());
  if (m_measurement.isStalled()) {
    m_failure = translatable("the line moves nothing any more");
    return;
  }
  const std::size_t wanted = m_measurement.connections();
  if (m_connections.size() == 1 && wanted > 1) {
    // It has a head start and would leave the others next to nothing for many seconds.
    m_movedByClosed += m_connections.front()->moved();
    m_connections.clear();
  }
  while (m_connections.size() < wanted) {
    open();
  }
}

void LineRun::replaceFailed() {
  const auto failed = std::stable_partition(m_connections.begin(), m_connections.end(),
                                            [](const auto& other) { return !other->failure(); });
  if (failed == m_connections.end()) {
    return;
  }
  for (auto connection = failed; connection != m_connections.end(); ++connection) {
    m_movedByClosed += (*connection)->moved();
    ++m_failures;
  }
  if (failed == m_connections.begin() || m_failures >= mostFailures) {
    m_failure = (*failed)->failure();
  }
  m_connections.erase(failed, m_connections.end());
}

void LineRun::probe() {
  m_foreign.probe();
  m_nextProbed = (m_nextProbed + 1) % m_connections.size();
  m_connections[m_nextProbed]->probe();
}

std::uint64_t LineRun::moved() const {
  const TcpCounts probes = m_foreign.counts();
  std::uint64_t bytes =
      m_movedByClosed +
      (m_direction == Direction::download ? probes.received : probes.acknowledged);
  for (const auto& connection : m_connections) {
    bytes += connection->moved();
  }
  return bytes;
}

} // namespace tidewell
