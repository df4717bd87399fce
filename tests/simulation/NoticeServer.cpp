#include "NoticeServer.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace tidewell::test {

namespace {

constexpr const char* serverName = "org.freedesktop.Notifications";

// An unanswered call times out after twenty-five seconds.
constexpr Ticks disturbance = std::chrono::seconds(30);

constexpr double longestWait = 60.0;

} // namespace

NoticeServer::NoticeServer(SimulatedBus& bus, const Clock& clock, Findings& findings)
    : m_bus(bus), m_clock(clock), m_findings(findings) {
  const auto forgetIds = [this] {
    disturb();
    m_ids.clear();
    m_formerIds.clear();
  };
  bus.serve(
      serverName, [this](sd_bus_message& call) { called(call); }, forgetIds);
  bus.greet(forgetIds);
}

void NoticeServer::start() {
  replaceServer();
  m_isThere = true;
  m_bus.setOwner(serverName, ":2." + std::to_string(++m_owner));
}

void NoticeServer::end() {
  replaceServer();
  m_isThere = false;
  m_bus.setOwner(serverName, "");
}

void NoticeServer::setManner(Manner manner) {
  disturb();
  m_manner = manner;
}

void NoticeServer::setInhibited(bool isInhibited) {
  m_isInhibited = isInhibited;
  m_inhibitionChangedAt = m_bus.now();
}

void NoticeServer::hearsSound() {
  // A server that does not answer well cannot say that it inhibits.
  const bool isKnown = m_manner == Manner::answers && !isDisturbed() &&
                       m_bus.now() - std::max(m_quietSince, m_inhibitionChangedAt) > disturbance;
  m_findings.require(!isKnown || !m_isInhibited, "a sound while the user must not be disturbed");
}

void NoticeServer::replaceServer() {
  disturb();
  for (const auto& [identifier, known] : m_ids) {
    m_formerIds[identifier] = known;
  }
  m_ids.clear();
  m_replacedAt = m_bus.now();
}

void NoticeServer::disturb() { m_quietSince = m_bus.now(); }

bool NoticeServer::isDisturbed() const {
  return !m_isThere || m_manner == Manner::hangs || !m_bus.isServing();
}

void NoticeServer::expects(const NotificationRequest& request) {
  if (isDisturbed()) {
    disturb();
  }
  const auto isSameKind = [&](const Awaited& awaited) {
    return awaited.request.identifier == request.identifier;
  };
  if (std::ranges::count_if(m_awaited, isSameKind) > 1) {
    const auto newest = std::ranges::find_if(m_awaited.rbegin(), m_awaited.rend(), isSameKind);
    m_awaited.erase(std::next(newest).base());
  }
  m_lastAsked[request.identifier] = m_clock.now();
  m_awaited.push_back({request, m_bus.now() - m_quietSince > disturbance, m_bus.now()});
}

void NoticeServer::forget() {
  disturb();
  m_awaited.clear();
  m_formerIds.clear();
}

void NoticeServer::called(sd_bus_message& call) {
  if (!m_isThere) {
    sd_bus_reply_method_errorf(&call, "org.freedesktop.DBus.Error.ServiceUnknown", "nobody");
    return;
  }
  const bool isNotice = sd_bus_message_is_method_call(&call, serverName, "Notify") > 0;
  const std::uint32_t id = m_lastId + 1;
  if (isNotice) {
    receive(call);
  }
  switch (m_manner) {
  case Manner::hangs:
    disturb();
    return;
  case Manner::refuses:
    sd_bus_reply_method_errorf(&call, "org.example.Refused", "%s", "not today");
    return;
  case Manner::talksNonsense:
    sd_bus_reply_method_return(&call, "(id)", 7, 0.5);
    return;
  case Manner::answers:
    break;
  }
  if (isNotice) {
    sd_bus_reply_method_return(&call, "u", id);
  } else if (sd_bus_message_is_method_call(&call, propertiesInterface, "Get") > 0) {
    answerProperty(call);
  } else {
    answerCapabilities(call);
  }
}

void NoticeServer::receive(sd_bus_message& call) {
  const char* application = "";
  const char* icon = "";
  const char* title = "";
  const char* body = "";
  std::uint32_t replaces = 0;
  sd_bus_message_read(&call, "susss", &application, &replaces, &icon, &title, &body);
  ++m_received;
  m_receivedInhibited += m_isInhibited ? 1 : 0;
  const auto isThis = [&](const Awaited& awaited) {
    return awaited.request.title == title && awaited.request.body == body;
  };
  const auto newest = std::find_if(m_awaited.rbegin(), m_awaited.rend(), isThis);
  m_findings.require(newest != m_awaited.rend(), "a notice that nobody asked for, or twice", title,
                     body);
  if (newest == m_awaited.rend()) {
    return;
  }
  // Of several with the same text, the newest may still come or have replaced this one.
  const Awaited awaited{newest->request, false, newest->askedAt};
  const Awaited oldest = *std::ranges::find_if(m_awaited, isThis);
  if (std::erase_if(m_awaited, isThis) > 1) {
    m_awaited.push_back(awaited);
  }
  // A message sent in time may be held by a hanging bus while the clock jumps.
  const double age = m_clock.now() - m_lastAsked[awaited.request.identifier];
  m_findings.require(age <= longestWait || m_bus.mayHaveHeld(awaited.askedAt),
                     "a notice that is old news", age);
  Known& known = m_ids[awaited.request.identifier];
  m_findings.require(mayReplace(oldest, replaces), "the notice whose place it takes", replaces,
                     "instead of", known.id);
  ++m_lastId;
  if (m_manner == Manner::answers) {
    // After a disturbance the reply may come too late.
    const bool isHeard = m_bus.now() - m_quietSince > disturbance;
    known = {m_lastId, isHeard ? m_lastId : known.id};
  }
}

bool NoticeServer::mayReplace(const Awaited& asked, std::uint32_t id) {
  const auto isIn = [id](const Known& known) { return id == known.id || id == known.before; };
  // A message sent before the server was replaced may be held by a hanging bus until afterwards.
  const auto former = m_formerIds.find(asked.request.identifier);
  return isIn(m_ids[asked.request.identifier]) ||
         (former != m_formerIds.end() && asked.askedAt <= m_replacedAt && isIn(former->second));
}

void NoticeServer::answerCapabilities(sd_bus_message& call) {
  if (playsSounds) {
    sd_bus_reply_method_return(&call, "as", 2, "body", "sound");
  } else {
    sd_bus_reply_method_return(&call, "as", 1, "body");
  }
}

void NoticeServer::answerProperty(sd_bus_message& call) {
  const std::string interface = nextText(call);
  if (interface == serverName && nextText(call) == "Inhibited") {
    sd_bus_reply_method_return(&call, "v", "b", m_isInhibited ? 1 : 0);
  } else {
    sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_UNKNOWN_PROPERTY, "%s", interface.c_str());
  }
}

void NoticeServer::check() {
  if (isDisturbed()) {
    disturb();
    return;
  }
  for (const Awaited& awaited : m_awaited) {
    m_findings.require(!awaited.mustArrive, "a notice does not arrive", awaited.request.identifier);
  }
}

} // namespace tidewell::test
