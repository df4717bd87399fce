#include "SamplingModel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tidewell::test {

namespace {

constexpr std::size_t longestHistory = 300;
constexpr std::size_t longestWindow = 10;
constexpr std::int64_t samplesPerProbe = 5;

std::int64_t rate(std::int64_t before, std::int64_t after, double elapsed) {
  return after > before ? static_cast<std::int64_t>(static_cast<double>(after - before) / elapsed)
                        : 0;
}

} // namespace

SamplingModel::SamplingModel(const VirtualScheduler& scheduler, const Clock& clock,
                             Findings& findings)
    : m_scheduler(scheduler), m_clock(clock), m_findings(findings) {}

void SamplingModel::adopt(SamplerState& sampler) {
  m_sampler = &sampler;
  m_grid.reset();
  m_baselinesDue = 0;
  m_freeAt = Ticks::zero();
  m_before.reset();
  m_samples = 0;
  m_window.clear();
  m_expected.clear();
  m_place = 0;
  m_history.clear();
  m_attaching = true;
  m_subscriptions.clear();
  watch(sampler);
  m_attaching = false;
}

void SamplingModel::release() {
  m_sampler = nullptr; // the subscriptions stay, to detect publications after the end
  m_grid.reset();
}

void SamplingModel::starts(double interval) {
  m_grid.emplace(m_scheduler.now(), interval, interval);
  ++m_baselinesDue;
}

void SamplingModel::reads(const ByteCounts& counts) {
  m_findings.require(m_sampler != nullptr, "counters are read after the sampler's end");
  const Reading reading{m_clock.now(), counts};
  if (m_baselinesDue > 0) {
    --m_baselinesDue;
    m_before = reading;
    return;
  }
  const Ticks now = m_scheduler.now();
  m_findings.require(m_grid && m_grid->mayFire(now, m_freeAt), "a sample at the wrong moment");
  if (!m_grid || m_sampler == nullptr || !m_before) {
    return;
  }
  m_grid->fire(now);
  const Reading before = *m_before;
  m_before = reading;
  const double elapsed = reading.time - before.time;
  if (before.time > 0.0 && elapsed > 0.0) {
    ++m_samples;
    m_expected.push_back({reading.time, rate(before.counts.bytesIn, counts.bytesIn, elapsed),
                          rate(before.counts.bytesOut, counts.bytesOut, elapsed),
                          m_sampler->latencyMs.get(), m_sampler->jitterMs.get(),
                          m_sampler->packetLossPercent.get(), m_samples % samplesPerProbe == 0});
  }
}

void SamplingModel::probes(std::optional<double> latency, Ticks takes) {
  const bool isDue = !m_expected.empty() && m_expected.back().awaitsProbe;
  m_findings.require(m_sampler != nullptr && isDue, "a probe that is not due, sample", m_samples);
  if (!isDue) {
    return;
  }
  m_freeAt = m_scheduler.now() + takes;
  Expected& expected = m_expected.back();
  expected.awaitsProbe = false;
  expected.latency = latency.value_or(0.0);
  if (latency) {
    expected.jitter = jitterWith(*latency, expected.jitter);
    expected.loss = expected.loss < 5.0 ? 0.0 : expected.loss - 5.0;
  } else {
    expected.loss = expected.loss > 90.0 ? 100.0 : expected.loss + 10.0;
  }
}

double SamplingModel::jitterWith(double latency, double carried) {
  m_window.push_back(latency);
  while (m_window.size() > longestWindow) {
    m_window.pop_front();
  }
  double sum = 0.0;
  for (std::size_t index = 0; index + 1 < m_window.size(); ++index) {
    sum += std::abs(m_window[index + 1] - m_window[index]);
  }
  return m_window.size() < 2 ? carried : sum / static_cast<double>(m_window.size() - 1);
}

void SamplingModel::watch(SamplerState& sampler) {
  const auto number = [this](auto& published, int place, auto field, const char* rule) {
    m_subscriptions.push_back(published.subscribe(
        [this, place, field, rule](const auto& value) { this->hears(place, value, field, rule); }));
  };
  number(sampler.currentDownloadBytesPerSec, 0, &Expected::download, "the download rate");
  number(sampler.currentUploadBytesPerSec, 1, &Expected::upload, "the upload rate");
  number(sampler.latencyMs, 2, &Expected::latency, "the latency");
  number(sampler.jitterMs, 3, &Expected::jitter, "the jitter");
  number(sampler.packetLossPercent, 4, &Expected::loss, "the loss");
  m_subscriptions.push_back(sampler.snapshots.subscribe([this](const SnapshotList& history) {
    if (!m_attaching) {
      checkHistory(history);
    }
  }));
}

template <class T>
void SamplingModel::hears(int place, const T& value, T Expected::*field, const char* rule) {
  if (m_attaching) {
    return;
  }
  m_findings.require(m_sampler != nullptr, "a publication after the end");
  m_findings.require(m_place == place, "the order of a publication's writes:", rule);
  m_place = place + 1;
  if (m_expected.empty()) {
    m_findings.require(false, "a publication without a sample");
    return;
  }
  m_findings.require(value == m_expected.front().*field, rule, value, "instead of",
                     m_expected.front().*field);
}

void SamplingModel::checkHistory(const SnapshotList& history) {
  if (m_expected.empty() || history.empty()) {
    m_findings.require(false, "a history without a sample");
    return;
  }
  const Expected expected = m_expected.front();
  m_expected.pop_front();
  m_findings.require(m_place == 5, "the history is written last");
  m_place = 0;
  const NetworkSnapshot& last = *history.back();
  m_findings.require(!expected.awaitsProbe, "a fifth sample without a probe");
  m_findings.require(
      last.timestamp() == expected.time && last.downloadBytesPerSec() == expected.download &&
          last.uploadBytesPerSec() == expected.upload && last.latencyMs() == expected.latency &&
          last.jitterMs() == expected.jitter && last.packetLossPercent() == expected.loss,
      "the newest record differs from what is published, taken at", expected.time);
  m_findings.require(last.downloadBytesPerSec() >= 0 && last.uploadBytesPerSec() >= 0 &&
                         last.packetLossPercent() >= 0.0 && last.packetLossPercent() <= 100.0,
                     "rates are never negative and loss is from 0 to 100");
  m_findings.require(m_history.empty() || m_history.back() != history.back(), "a record twice");
  m_history.push_back(history.back());
  if (m_history.size() > longestHistory) {
    m_history.pop_front();
  }
  ++m_published;
  const bool isSame = history.size() == m_history.size() && history.front() == m_history.front() &&
                      (m_published % comparedEvery != 0 || std::ranges::equal(history, m_history));
  m_findings.require(isSame, "the history is the last 300 records in the order of publication, has",
                     history.size());
}

void SamplingModel::checkNothingIsMissing() {
  if (m_sampler == nullptr || m_scheduler.now() < m_freeAt) {
    return;
  }
  m_findings.require(m_baselinesDue == 0, "a baseline is missing");
  m_findings.require(!m_grid || m_grid->next() > m_scheduler.now(), "a sample is missing");
  m_findings.require(m_expected.empty(), "a publication is missing");
}

} // namespace tidewell::test
