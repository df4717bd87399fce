#include "helpers/networkQuality/ForeignProber.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tidewell {
namespace {

constexpr std::size_t mostForeignProbes = 32;
constexpr std::size_t longestBody = 4096;
// Four round trips through the longest queues. A probe that lost a packet besides is not in the
// mean anyway.
constexpr Seconds probeLimit = 10.0;

} // namespace

ForeignProber::ForeignProber(TransferLoop& loop, const Destination& destination,
                             std::string address,
                             std::function<void(const ForeignProbe&, double bytes)> onProbe)
    : m_destination(destination), m_address(std::move(address)), m_onProbe(std::move(onProbe)),
      m_pool(loop, 0) {}

ForeignProber::~ForeignProber() {
  for (const auto& probe : m_probes) {
    m_pool.remove(probe->transfer);
  }
}

void ForeignProber::probe() {
  if (m_probes.size() >= mostForeignProbes) {
    return;
  }
  forgetClosed();
  m_tallies.push_back(std::make_unique<TcpTally>());
  m_probes.push_back(std::make_unique<Probe>(m_destination, m_address, *m_tallies.back()));
  Probe& probe = *m_probes.back();
  curl_easy_setopt(probe.transfer.handle(), CURLOPT_FRESH_CONNECT, 1L);
  curl_easy_setopt(probe.transfer.handle(), CURLOPT_FORBID_REUSE, 1L);
  probe.transfer.keepBody(longestBody);
  probe.transfer.setLimit(probeLimit);
  probe.transfer.onFinished([this, &probe] { ended(&probe); });
  m_pool.add(probe.transfer);
}

TcpCounts ForeignProber::counts() const {
  TcpCounts sum = m_closed;
  for (const auto& tally : m_tallies) {
    sum += tally->counts();
  }
  return sum;
}

void ForeignProber::forgetClosed() {
  const auto isDone = [this](const auto& tally) {
    return !tally->isOpen() &&
           std::none_of(m_probes.begin(), m_probes.end(),
                        [&](const auto& probe) { return &probe->tally == tally.get(); });
  };
  std::erase_if(m_tallies, [&](const auto& tally) {
    const bool isOver = isDone(tally);
    if (isOver) {
      m_closed += tally->counts();
    }
    return isOver;
  });
}

void ForeignProber::ended(Probe* probe) {
  const TcpCounts counts = probe->tally.counts();
  const Transfer& transfer = probe->transfer;
  if (!transfer.failure() && transfer.handshakeRoundTrips() > 0) {
    const Seconds connected = transfer.time(CURLINFO_CONNECT_TIME_T);
    const Seconds encrypted = transfer.time(CURLINFO_APPCONNECT_TIME_T);
    m_onProbe({connected - transfer.time(CURLINFO_NAMELOOKUP_TIME_T),
               (encrypted - connected) / transfer.handshakeRoundTrips(), transfer.roundTrip()},
              static_cast<double>(counts.received + counts.acknowledged));
  }
  std::erase_if(m_probes, [probe](const auto& other) { return other.get() == probe; });
}

} // namespace tidewell
