#include "alerts/NotificationService.h"

#include "base/Clock.h"
#include "base/NumberText.h"
#include "base/Scheduler.h"
#include "base/Translation.h"
#include "platform/NotificationCenter.h"
#include "settings/AppSettings.h"

#include <utility>

namespace tidewell {
namespace {

constexpr Seconds cooldown = 60.0;

} // namespace

NotificationService::NotificationService(const AppSettings& settings, const Clock& clock,
                                         NotificationCenter& center)
    : m_settings(&settings), m_clock(&clock), m_center(&center) {}

NotificationService& NotificationService::shared() {
  static NotificationService service;
  return service;
}

void NotificationService::attach(const AppSettings& settings, const Clock& clock,
                                 NotificationCenter& center) {
  m_settings = &settings;
  m_clock = &clock;
  m_center = &center;
}

void NotificationService::detach() {
  m_settings = nullptr;
  m_clock = nullptr;
  m_center = nullptr;
}

void NotificationService::notifyConnectionLost() {
  notify({"connection-lost", translated("Internet Connection Lost"),
          translated("No internet connectivity detected.")});
}

void NotificationService::notifyConnectionRestored() {
  if (isEnabled()) {
    send({"connection-restored", translated("Connection Restored"),
          translated("Internet connectivity has been restored.")});
  }
}

void NotificationService::notifySpeedDrop(double currentMbps, double thresholdMbps) {
  notify({"speed-drop", translated("Speed Dropped Below Threshold"),
          filled(translated("Download speed fell to %1 Mbps (threshold: %2 Mbps)"),
                 {fixedText(currentMbps, 1), fixedText(thresholdMbps, 0)}),
          NotificationPriority::low});
}

void NotificationService::notifyHighLatency(double latencyMs, double thresholdMs) {
  notify({"high-latency", translated("High Latency Detected"),
          filled(translated("Latency is %1 ms (threshold: %2 ms)"),
                 {fixedText(latencyMs, 0), fixedText(thresholdMs, 0)}),
          NotificationPriority::low});
}

bool NotificationService::isEnabled() const {
  return m_center != nullptr && m_settings->showNotifications();
}

void NotificationService::notify(NotificationRequest request) {
  if (isEnabled() && m_clock->now() - m_lastNotificationTime > cooldown) {
    send(std::move(request));
  }
}

void NotificationService::send(NotificationRequest request) {
  // First, so that the quiet period starts even if the desktop refuses the notice.
  m_lastNotificationTime = m_clock->now();
  m_center->add(std::move(request));
}

} // namespace tidewell
