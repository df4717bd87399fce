#pragma once

#include <limits>

namespace tidewell {

class AppSettings;
class Clock;
class NotificationCenter;
struct NotificationRequest;

/// Writes the notices and limits their number: after a notice of any kind none is sent for 60
/// seconds, except that a connection was restored. Sends nothing while the user has notices
/// switched off.
class NotificationService {
public:
  /// Sends nothing until `attach`.
  NotificationService() = default;
  /// Like `attach`.
  NotificationService(const AppSettings& settings, const Clock& clock, NotificationCenter& center);

  /// The process's service, constructed on first use.
  [[nodiscard]] static NotificationService& shared();

  /// Borrows all three until `detach`.
  void attach(const AppSettings& settings, const Clock& clock, NotificationCenter& center);

  /// Sends nothing from now on.
  void detach();

  void notifyConnectionLost();
  /// Sent during the quiet period, too, and restarts it.
  void notifyConnectionRestored();
  /// Both in megabits per second.
  void notifySpeedDrop(double currentMbps, double thresholdMbps);
  /// Both in milliseconds.
  void notifyHighLatency(double latencyMs, double thresholdMs);

private:
  [[nodiscard]] bool isEnabled() const;
  void notify(NotificationRequest request);
  void send(NotificationRequest request);

  const AppSettings* m_settings = nullptr;
  const Clock* m_clock = nullptr;
  NotificationCenter* m_center = nullptr;
  // Seconds since 1970; the distant past before the first notice.
  double m_lastNotificationTime = -std::numeric_limits<double>::infinity();
};

} // namespace tidewell
