#include "sampling/BandwidthSampler.h"

#include "base/Checked.h"
#include "base/Clock.h"
#include "platform/ConfigurationStore.h"
#include "platform/Platform.h"

#include <utility>

namespace tidewell {
namespace {

constexpr const char* samplerQueueLabel = "com.halden.tidewell.sampler";
constexpr const char* fallbackInterface = "en0";
constexpr std::int64_t samplesPerProbe = 5;

/// Bytes per second, truncated; 0 for an interval in which the counter went down.
std::int64_t rateOf(std::int64_t before, std::int64_t after, double elapsed) {
  const std::int64_t delta = checkedSubtract(after, before);
  return delta < 1 ? 0 : checkedTruncate(static_cast<double>(delta) / elapsed);
}

} // namespace

BandwidthSampler::BandwidthSampler(const Platform& platform)
    : m_main(platform.scheduler.main()), m_clock(platform.clock), m_counters(platform.counters),
      m_configuration(platform.configuration), m_probe(platform.children),
      m_workQueue(platform.scheduler.makeSerialQueue(samplerQueueLabel)) {}

void BandwidthSampler::start(Seconds interval) {
  m_workQueue->post([this] { prime(); });
  m_timer = m_workQueue->repeat(interval, interval, [this] { return sample(); });
}

void BandwidthSampler::stop() { m_timer.reset(); }

std::string BandwidthSampler::detectPrimaryInterface(ConfigurationStore& configuration) {
  return configuration.primaryInterface().value_or(fallbackInterface);
}

ByteCounts BandwidthSampler::readInterfaceBytes(InterfaceCounters& counters,
                                                const std::string& interface) {
  return counters.read(interface).value_or(ByteCounts{});
}

void BandwidthSampler::prime() {
  m_previous = readPrimaryInterface();
  m_previousTimestamp = m_clock.now();
}

Async<> BandwidthSampler::sample() {
  const double now = m_clock.now();
  const ByteCounts counts = readPrimaryInterface();
  const double elapsed = now - m_previousTimestamp;
  const bool hasBaseline = m_previousTimestamp > 0.0 && elapsed > 0.0;
  const ByteCounts before = std::exchange(m_previous, counts);
  m_previousTimestamp = now;
  if (!hasBaseline) {
    co_return;
  }
  const std::int64_t download = rateOf(before.bytesIn, counts.bytesIn, elapsed);
  const std::int64_t upload = rateOf(before.bytesOut, counts.bytesOut, elapsed);

  m_sampleCount = checkedAdd(m_sampleCount, 1);
  LineQuality quality{latencyMs.get(), jitterMs.get(), packetLossPercent.get()};
  if (m_sampleCount % samplesPerProbe == 0) {
    quality = co_await m_probe.probe(quality);
  }
  auto snapshot = std::make_shared<const NetworkSnapshot>(
      now, download, upload, quality.latencyMs, quality.jitterMs, quality.packetLossPercent);
  m_main.post([weak = weak_from_this(), snapshot = std::move(snapshot)] {
    if (const auto self = weak.lock()) {
      self->publish(snapshot);
    }
  });
}

ByteCounts BandwidthSampler::readPrimaryInterface() {
  return readInterfaceBytes(m_counters, detectPrimaryInterface(m_configuration));
}

void BandwidthSampler::publish(const std::shared_ptr<const NetworkSnapshot>& snapshot) {
  currentDownloadBytesPerSec.set(snapshot->downloadBytesPerSec());
  currentUploadBytesPerSec.set(snapshot->uploadBytesPerSec());
  latencyMs.set(snapshot->latencyMs());
  jitterMs.set(snapshot->jitterMs());
  packetLossPercent.set(snapshot->packetLossPercent());
  snapshots.mutate([&](SnapshotList& history) {
    history.push_back(snapshot);
    if (history.size() > maxSnapshots) {
      history.pop_front();
    }
  });
}

} // namespace tidewell
