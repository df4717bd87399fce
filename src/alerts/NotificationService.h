#pragma once

#include <limits>

namespace tidewell {

class AppSettings;
class Clock;
class NotificationCenter;
struct NotificationRequest;

/// Words the notices and keeps them from flooding the user: after one of any kind there is a quiet
/// period of 60 seconds for all of them, which only the restored notice may break.
///
/// Sends nothing while the user has notices switched off. Main thread.
class NotificationService {
public:
  /// A service that sends nothing until it is attached.
  NotificationService() = default;
  /// Like `attach`.
  NotificationService(const AppSettings& settings, const Clock& clock, NotificationCenter& center);
  NotificationService(const NotificationService&) = delete;
  NotificationService& operator=(const NotificationService&) = delete;
  ~NotificationService() = default;

  /// The process's service, made on first use.
  [[nodiscard]] static NotificationService& shared();

  /// Gives the service what it works with, borrowed until `detach`.
  void attach(const AppSettings& settings, const Clock& clock, NotificationCenter& center);

  /// Lets go of it; nothing is sent from then on.
  void detach();

  void notifyConnectionLost();
  /// Sent also during the quiet period, which starts again.
  void notifyConnectionRestored();
  /// Both in megabits per second.
  void notifySpeedDrop(double currentMbps, double thresholdMbps);
  /// Both in milliseconds.
  void notifyHighLatency(double latencyMs, double thresholdMs);

private:
  [[nodiscard]] bool isEnabled() const;
  [[nodiscard]] bool isQuietPeriod() const;
  void notify(NotificationRequest request);
  void send(NotificationRequest request);

  const AppSettings* m_settings = nullptr;
  const Clock* m_clock = nullptr;
  NotificationCenter* m_center = nullptr;
  // Seconds since 1970; the distant past until the first notice.
  double m_lastNotificationTime = -std::numeric_limits<double>::infinity();
};

} // namespace tidewell
