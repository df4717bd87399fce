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

/// The notices that must be sent, and their texts. Takes the place of the notification center.
///
/// It is called before and after the program receives each published value; in between, exactly the
/// notice that is due must come. The quiet period follows the wall clock as the program reads it:
/// setting the clock forward shortens it, setting it back extends it until the clock passes its end
/// again.
class NoticeModel final : public NotificationCenter {
public:
  NoticeModel(const Clock& clock, const PreferencesStore& store, Findings& findings);

  void requestAuthorization() override { ++m_authorizations; }
  void add(NotificationRequest request) override;

  /// A new program, which assumes a connected line.
  void adopt();

  /// Call it before the program receives a value.
  void beforeConnectivity(bool isConnected);
  void beforeDownload(std::int64_t bytesPerSec);
  void beforeLatency(double latencyMs);
  /// Call it afterwards.
  void afterwards();

  [[nodiscard]] int authorizations() const { return m_authorizations; }
  /// The number of notices sent of each kind.
  [[nodiscard]] const std::map<std::string, int>& sent() const { return m_sent; }

private:
  void expect(NotificationRequest request, bool isRestored);

  const Clock& m_clock;
  const PreferencesStore& m_store;
  Findings& m_findings;
  bool m_wasConnected = true;
  std::optional<double> m_lastNotice; // wall clock
  std::optional<NotificationRequest> m_expected;
  std::optional<double> m_lastSeen; // likewise, of the last one that came
  int m_authorizations = 0;
  std::map<std::string, int> m_sent;
};

} // namespace tidewell::test
