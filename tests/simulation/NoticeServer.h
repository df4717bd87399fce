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

/// A desktop's notification server, and the rules for the program's notices: each arrives once,
/// unchanged, less than a minute late, replaces the last one of its kind while the same server
/// runs, and arrives at once if nothing is in the way. While the user must not be disturbed they
/// arrive as well, but are not heard.
class NoticeServer {
public:
  enum class Manner { answers, refuses, hangs, talksNonsense };

  NoticeServer(SimulatedBus& bus, const Clock& clock, Findings& findings);

  void start();
  void end();
  void setManner(Manner manner);
  /// Whether the user must not be disturbed.
  void setInhibited(bool isInhibited);
  bool playsSounds = false;

  /// The program decided to send a notice.
  void expects(const NotificationRequest& request);
  /// The program's own sound begins.
  void hearsSound();
  /// The program has ended with its unsent notices.
  void forget();

  void check();

  [[nodiscard]] int received() const { return m_received; }
  /// How many of them while the user must not be disturbed.
  [[nodiscard]] int receivedInhibited() const { return m_receivedInhibited; }

private:
  struct Awaited {
    NotificationRequest request;
    bool mustArrive;
    Ticks askedAt;
  };

  /// A notice's number as the program knows it, or the previous one.
  struct Known {
    std::uint32_t id = 0;
    std::uint32_t before = 0;
  };

  [[nodiscard]] bool isDisturbed() const;
  void called(sd_bus_message& call);
  void receive(sd_bus_message& call);
  void answerCapabilities(sd_bus_message& call);
  void answerProperty(sd_bus_message& call);
  /// Delivery was or is obstructed.
  void disturb();
  /// Another server takes over, or none.
  void replaceServer();
  /// Whether the program may use this as the number of the last notice of its kind.
  [[nodiscard]] bool mayReplace(const Awaited& asked, std::uint32_t id);

  SimulatedBus& m_bus;
  const Clock& m_clock;
  Findings& m_findings;
  bool m_isThere = false;
  Manner m_manner = Manner::answers;
  Ticks m_quietSince = Ticks::zero();
  bool m_isInhibited = false;
  Ticks m_inhibitionChangedAt = Ticks::zero();
  std::deque<Awaited> m_awaited;             // of each kind one under way and one waiting for it
  std::map<std::string, double> m_lastAsked; // wall clock
  std::map<std::string, Known> m_ids;
  std::map<std::string, Known> m_formerIds; // of former servers, on the same connection
  Ticks m_replacedAt = Ticks::zero();
  std::uint32_t m_lastId = 100;
  int m_owner = 0;
  int m_received = 0;
  int m_receivedInhibited = 0;
};

} // namespace tidewell::test
