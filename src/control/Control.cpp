#include "control/Control.h"

#include "base/Translation.h"
#include "control/Output.h"
#include "control/ValueTexts.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <unistd.h>

namespace tidewell {
namespace {

namespace face = residentInterface;
using Verb = ControlCommand::Verb;
using std::chrono::seconds;

// The bus waits for its service, which has to load and connect.
constexpr seconds startLimit(10);
// A test takes at most 40 s.
constexpr seconds speedTestLimit(60);

ExitStatus statusOf(Written written) {
  if (written != Written::failed) {
    return ExitStatus::success;
  }
  complain(filled(translated("cannot write: %1"), {std::strerror(errno)}));
  return ExitStatus::failure;
}

} // namespace

ExitStatus printLine(const std::string& line) { return statusOf(writeOutput(line + "\n")); }

ExitStatus Control::run() {
  const ExitStatus status = m_loop.connect() ? runOnBus() : ExitStatus::noBus;
  if (status == ExitStatus::noBus) {
    complain(translated("no session bus"));
  }
  return status;
}

ExitStatus Control::runOnBus() {
  m_watch = std::make_unique<ResidentWatch>(m_loop.bus(), [this] { m_changed(); });
  // The owner of the name, then its values.
  Outcome outcome = awaitPresence(2 * BusLoop::replyLimit);
  if (m_command.starts && m_watch->presence() == Presence::absent) {
    if (!start()) {
      complain(translated("Tidewell cannot be started"));
      return ExitStatus::notRunning;
    }
    outcome = m_loop.runUntil(
        [this] {
          return m_watch->presence() == Presence::present ||
                 m_watch->presence() == Presence::silent;
        },
        startLimit);
  }
  if (m_command.verb == Verb::follow) {
    return follow();
  }
  return m_watch->presence() == Presence::present ? runVerb() : absence(outcome);
}

/// Has the bus start the resident.
bool Control::start() {
  constexpr std::uint64_t limit = std::chrono::microseconds(startLimit).count();
  constexpr std::uint32_t noFlags = 0;
  std::optional<bool> isStarted;
  sd_bus_set_method_call_timeout(&m_loop.bus(), limit);
  const BusSlot question = callMethod(
      m_loop.bus(), busDaemon, "StartServiceByName",
      [&](auto* reply) { isStarted = reply != nullptr; }, "su", face::name, noFlags);
  sd_bus_set_method_call_timeout(&m_loop.bus(),
                                 static_cast<std::uint64_t>(BusLoop::replyLimit.count()));
  const Outcome outcome =
      m_loop.runUntil([&] { return isStarted.has_value(); }, startLimit + seconds(1));
  return outcome == Outcome::reached && *isStarted;
}

/// Says why there are no values.
ExitStatus Control::absence(Outcome outcome) const {
  if (outcome == Outcome::busLost) {
    return ExitStatus::noBus;
  }
  const bool isAbsent = m_watch->presence() == Presence::absent;
  if (m_command.verb == Verb::status && m_command.isJson) {
    const Presence presence = isAbsent ? Presence::absent : Presence::silent;
    static_cast<void>(printLine(statusJson(presence, {})));
  }
  complain(isAbsent ? translated("Tidewell is not running")
                    : translated("Tidewell does not respond"));
  return isAbsent ? ExitStatus::notRunning : ExitStatus::notResponding;
}

ExitStatus Control::runVerb() {
  const ResidentValues& values = m_watch->values();
  switch (m_command.verb) {
  case Verb::status:
    return printLine(m_command.isJson ? statusJson(Presence::present, values)
                                      : statusLine(Presence::present, values));
  case Verb::processes:
    return printLine(m_command.isJson ? processJson(values)
                                      : processTable(values, terminalColumns(STDOUT_FILENO)));
  case Verb::speedtest:
    return speedTest();
  case Verb::quit:
    return quit();
  default:
    return open();
  }
}

ExitStatus Control::follow() {
  Written written = writeOutput(followHeader(m_command.format));
  std::optional<std::string> shown;
  m_changed = [&] {
    std::string line = followLine(m_command.format, m_watch->presence(), m_watch->values());
    if (written == Written::whole && line != shown) {
      shown = std::move(line);
      written = writeOutput(*shown + "\n");
    }
  };
  if (m_watch->presence() != Presence::unknown) {
    m_changed();
  }
  m_loop.watchOutput();
  const Outcome outcome = m_loop.runUntil([&] { return written != Written::whole; }, std::nullopt);
  m_changed = [] {};
  return outcome == Outcome::busLost ? ExitStatus::noBus : statusOf(written);
}

ExitStatus Control::open() {
  bool isAnswered = false;
  const Outcome outcome = call(m_command.method.c_str(), isAnswered);
  return isAnswered ? ExitStatus::success : absence(outcome);
}

ExitStatus Control::quit() {
  bool isAnswered = false;
  Outcome outcome = call(face::quit, isAnswered);
  if (outcome == Outcome::reached) {
    outcome = m_loop.runUntil([this] { return m_watch->presence() == Presence::absent; },
                              BusLoop::replyLimit);
  }
  return m_watch->presence() == Presence::absent ? ExitStatus::success : absence(outcome);
}

ExitStatus Control::speedTest() {
  if (!m_watch->values().of(face::speedTestIsRunning)) {
    bool isAnswered = false;
    const Outcome outcome = call(face::runSpeedTest, isAnswered);
    if (!isAnswered) {
      return absence(outcome);
    }
    // A test that cannot be started is over already.
    m_watch->ask();
    if (const Outcome answer = awaitPresence(BusLoop::replyLimit);
        m_watch->presence() != Presence::present) {
      return absence(answer);
    }
  }
  const Outcome outcome = awaitSpeedTest();
  showProgress("");
  if (outcome == Outcome::reached && m_watch->presence() == Presence::present) {
    return speedTestResult();
  }
  return absence(outcome);
}

/// Waits for the end of the test, or of the resident. Shows the seconds and the present rates.
BusLoop::Outcome Control::awaitSpeedTest() {
  const auto isOver = [this] {
    return m_watch->presence() != Presence::present ||
           !m_watch->values().of(face::speedTestIsRunning);
  };
  const std::size_t columns = terminalColumns(STDERR_FILENO);
  if (columns == 0) {
    return m_loop.runUntil(isOver, speedTestLimit);
  }
  Outcome outcome = Outcome::timedOut;
  for (int passed = 0; passed < speedTestLimit.count() && outcome == Outcome::timedOut; ++passed) {
    showProgress(progressText(passed, m_watch->values(), columns - 1)); // the last is the cursor's
    outcome = m_loop.runUntil(isOver, seconds(1));
  }
  return outcome;
}

ExitStatus Control::speedTestResult() const {
  const ResidentValues& values = m_watch->values();
  const bool hasResult = !values.lastSpeedTest.empty();
  std::string failure = values.of(face::speedTestFailure);
  if (failure.empty() && !hasResult) {
    failure = translatable("no result");
  }
  const auto result = hasResult ? values.lastSpeedTest.front() : SpeedTestResult{};
  if (m_command.isJson) {
    const ExitStatus status = printLine(speedTestJson(result, failure));
    return failure.empty() ? status : ExitStatus::failure;
  }
  if (failure.empty()) {
    return printLine(speedTestText(result));
  }
  complain(filled(translated("the speed test failed: %1"), {translatedReason(failure)}));
  return ExitStatus::failure;
}

BusLoop::Outcome Control::awaitPresence(BusLoop::Limit limit) {
  return m_loop.runUntil([this] { return m_watch->presence() != Presence::unknown; }, limit);
}

/// Calls a method and waits for its answer, or for the end of the resident.
BusLoop::Outcome Control::call(const char* method, bool& isAnswered) {
  bool isOver = false;
  m_watch->call(method, [&](bool answered) {
    isOver = true;
    isAnswered = answered;
  });
  return m_loop.runUntil([&] { return isOver || m_watch->presence() == Presence::absent; },
                         BusLoop::replyLimit + seconds(1));
}

} // namespace tidewell
