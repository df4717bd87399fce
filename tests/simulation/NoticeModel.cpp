#include "NoticeModel.h"

#include "Preferences.h"

#include <array>
#include <cstdio>
#include <utility>

namespace tidewell::test {

namespace {

constexpr double quietPeriod = 60.0;

/// Formats a number with this many decimals, differently from the program.
std::string number(double value, int decimals) {
  std::array<char, 400> text{};
  std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  return text.data();
}

} // namespace

NoticeModel::NoticeModel(const Clock& clock, const PreferencesStore& store, Findings& findings)
    : m_clock(clock), m_store(store), m_findings(findings) {}

void NoticeModel::adopt() {
  m_wasConnected = true;
  m_expected.reset();
}

void NoticeModel::beforeConnectivity(bool isConnected) {
  const bool was = std::exchange(m_wasConnected, isConnected);
  if (was && !isConnected) {
    expect({"connection-lost", "Internet Connection Lost", "No internet connectivity detected."},
           false);
  } else if (!was && isConnected) {
    expect(
        {"connection-restored", "Connection Restored", "Internet connectivity has been restored."},
        true);
  }
}

void NoticeModel::beforeDownload(std::int64_t bytesPerSec) {
  const double threshold = numberIn(m_store.value("slowSpeedThreshold"), 10.0);
  const double mbps = static_cast<double>(bytesPerSec) * 8.0 / 1'000'000.0;
  if (bytesPerSec > 1250 && mbps < threshold) {
    expect({"speed-drop", "Speed Dropped Below Threshold",
            "Download speed fell to " + number(mbps, 1) +
                " Mbps (threshold: " + number(threshold, 0) + " Mbps)",
            NotificationPriority::low},
           false);
  }
}

void NoticeModel::beforeLatency(double latencyMs) {
  const double threshold = numberIn(m_store.value("highLatencyThreshold"), 100.0);
  if (latencyMs > 0.0 && latencyMs > threshold) {
    expect(
        {"high-latency", "High Latency Detected",
         "Latency is " + number(latencyMs, 0) + " ms (threshold: " + number(threshold, 0) + " ms)",
         NotificationPriority::low},
        false);
  }
}

void NoticeModel::expect(NotificationRequest request, bool isRestored) {
  const double now = m_clock.now();
  const bool isQuiet = m_lastNotice && !(now - *m_lastNotice > quietPeriod);
  if (truthIn(m_store.value("showNotifications"), true) && (isRestored || !isQuiet)) {
    m_expected = std::move(request);
    m_lastNotice = now;
  }
}

void NoticeModel::add(NotificationRequest request) {
  const double now = m_clock.now();
  m_findings.require(request.identifier == "connection-restored" || !m_lastSeen ||
                         now - *m_lastSeen > quietPeriod,
                     "two notices within a minute, the second is", request.identifier);
  m_findings.require(m_expected.has_value(), "a notice that is not due", request.identifier);
  if (m_expected) {
    m_findings.require(request == *m_expected, "a notice's words", request.identifier,
                       request.title, request.body, "instead of", m_expected->identifier,
                       m_expected->title, m_expected->body);
  }
  m_expected.reset();
  m_lastSeen = now;
  ++m_sent[request.identifier];
}

void NoticeModel::afterwards() {
  m_findings.require(!m_expected, "a notice is missing",
                     m_expected ? m_expected->identifier : std::string());
  m_expected.reset();
}

} // namespace tidewell::test
