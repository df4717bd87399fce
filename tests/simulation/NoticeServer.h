#pragma once

#include "Findings.h"
#include "SimulatedBus.h"
#include "base/Clock.h"
#include "platform/NotificationCenter.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>

namespace tidewell::test {

/// A desktop's notification server, and the rules by which the notices that the program decided to
/// send must arrive there: each once, as it was meant, not a minute late, in the place of the last
/// one of its kind as long as the same server runs, and at once when nothing stands in the way.
class NoticeServer {
public:
  enum class Manner { answers, refuses, hangs, talksNonsense };

  NoticeServer(SimulatedBus& bus, const Clock& clock, Findings& findings);

  void start();
  void end();
  void setManner(Manner manner);
  bool playsSounds = false;

  /// The program decided to send a notice.
  void expects(const NotificationRequest& request);
  /// The program is gone, and what it had to say with it.
  void forget();

  void check();

  [[nodiscard]] int received() const { return m_received; }

private:
  struct Awaited {
    NotificationRequest request;
    bool mustArrive;
    Ticks askedAt;
  };

  /// The number that the program knows a notice by, or the one before.
  struct Known {
    std::uint32_t id = 0;
    std::uint32_t before = 0;
  };

  [[nodiscard]] bool isDisturbed() const;
  void called(sd_bus_message& call);
  void receive(sd_bus_message& call);
  void answerCapabilities(sd_bus_message& call);
  /// Something stood, or stands, in the way.
  void disturb();
  /// From now on it is another server, or none.
  void replaceServer();
  /// Whether the program may take this for the number of the last notice of the kind.
  [[nodiscard]] bool mayReplace(const Awaited& asked, std::uint32_t id);

  SimulatedBus& m_bus;
  const Clock& m_clock;
  Findings& m_findings;
  bool m_isThere = false;
  Manner m_manner = Manner::answers;
  Ticks m_quietSince = Ticks::zero();
  std::deque<Awaited> m_awaited; // of each kind one that is under way and one that waits for it
  std::map<std::string, double> m_lastAsked; // wall clock
  std::map<std::string, Known> m_ids;
  std::map<std::string, Known> m_formerIds; // of servers before, on the same connection
  Ticks m_replacedAt = Ticks::zero();
  std::uint32_t m_lastId = 100;
  int m_owner = 0;
  int m_received = 0;
};

} // namespace tidewell::test
