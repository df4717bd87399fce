#pragma once

#include "Findings.h"
#include "base/Clock.h"
#include "platform/NotificationCenter.h"
#include "platform/PreferencesStore.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace tidewell::test {

/// Which notices must be sent, and with which words: the desktop to which they are sent.
///
/// For each published value it is asked twice, before and after the program hears the value; in
/// between the one notice that is due must come, and no other. The quiet period is measured with
/// the wall clock as the program reads it: a clock that is set forward shortens it, one that is
/// set back makes it last until the clock has come past its end again.
class NoticeModel final : public NotificationCenter {
public:
  NoticeModel(const Clock& clock, const PreferencesStore& store, Findings& findings);

  void requestAuthorization() override { ++m_authorizations; }
  void add(NotificationRequest request) override;

  /// A new program, which takes the line for connected.
  void adopt();

  /// Before the program hears a value.
  void beforeConnectivity(bool isConnected);
  void beforeDownload(std::int64_t bytesPerSec);
  void beforeLatency(double latencyMs);
  /// After it has heard it.
  void afterwards();

  [[nodiscard]] int authorizations() const { return m_authorizations; }
  /// How many of each kind were sent.
  [[nodiscard]] const std::map<std::string, int>& sent() const { return m_sent; }

private:
  void expect(NotificationRequest request, bool isRestored);

  const Clock& m_clock;
  const PreferencesStore& m_store;
  Findings& m_findings;
  bool m_wasConnected = true;
  std::optional<double> m_lastNotice; // wall clock
  std::optional<NotificationRequest> m_expected;
  std::optional<double> m_lastSeen; // likewise, of what really came
  int m_authorizations = 0;
  std::map<std::string, int> m_sent;
};

} // namespace tidewell::test
