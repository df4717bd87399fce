#include "SimulatedTools.h"

#include "CountedMemory.h"
#include "support/FakeMachine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace tidewell::test {

namespace {

using Arguments = std::vector<std::string>;

// The program's time limits for each tool, and how long one may run after SIGTERM.
constexpr double pingLimit = 5.0;
constexpr double nettopLimit = 4.0; // by the tracker's watchdog
constexpr double deafNettopLimit = 5.0;
constexpr double qualityLimit = 45.0;
constexpr double lookupLimit = 3.0;
constexpr double grace = 0.3;

/// An output of ping, and the resulting latency.
struct Answer {
  std::string output;
  std::optional<double> latency;
};

const std::array<Answer, 14> oddAnswers = {{
    {"", std::nullopt},
    {"\xFF\xFE time=3.0 ms", std::nullopt},
    {"64 bytes: time=5.0", std::nullopt},
    {"64 bytes: TIME=5.0 ms", std::nullopt},
    {"64 bytes: temps=5.0 ms", std::nullopt},
    {"ping: sendmsg: Operation not permitted\n", std::nullopt},
    {"time= ms", 0.0},
    {"time=abc ms", 0.0},
    {"time=1,5 ms", 0.0},
    {"time=nan ms", 0.0},
    {"time=1e999 ms", 0.0},
    {"time=-7.5 ms", -7.5},
    {"time=1e300 ms", 1e300},
    {"time=3.5 ms\ntime=900.0 ms\n", 3.5},
}};

// Little memory for a text, much for its parsed lines. Made beforehand, because memory is scarce
// here too.
const std::string manyLines = ",bytes_in,bytes_out,\ncurl.1,5,5,\n" + std::string(5000, '\n');

std::string decimal(double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.3f", value);
  return text.data();
}

} // namespace

bool SimulatedTools::play(const std::string& name, const VirtualProcesses::Pointer& process) {
  if (name == "ping") {
    return ping(process);
  }
  if (name == "nettop") {
    return listProcesses(process);
  }
  if (name == "networkQuality") {
    return testSpeed(process);
  }
  if (name == "publicAddress") {
    return lookUp(process);
  }
  m_findings.require(name == "notificationSound", "a program that is not known", name);
  return sound(process);
}

void SimulatedTools::misbehave(Conduct& conduct) {
  conduct.hangs = m_dice.chance(conditions.hangs);
  conduct.floods = m_dice.chance(conditions.floods);
  conduct.isDeaf = (conduct.hangs || conduct.floods) && m_dice.chance(0.2);
  floods += conduct.floods ? 1 : 0;
}

Ticks SimulatedTools::duration(const Conduct& conduct, double limit) {
  if (!conduct.hangs && !conduct.floods) {
    return toTicks(std::min(conduct.takes, limit));
  }
  return toTicks(limit) + (conduct.isDeaf ? toTicks(grace) : Ticks::zero());
}

bool SimulatedTools::isKept(const Conduct& conduct) {
  return !conduct.floods || !CountedMemory::isScarce();
}

void SimulatedTools::perform(const VirtualProcesses::Pointer& process, const Conduct& conduct) {
  process->ignoresTermination = conduct.isDeaf;
  const int output = process->descriptors.at(STDOUT_FILENO).get();
  ::fcntl(output, F_SETFL, O_NONBLOCK);
  while (::write(output, conduct.output.data(), conduct.output.size()) > 0 && conduct.floods) {
  }
  if (conduct.hangs || conduct.floods) {
    return;
  }
  const auto finish = [weak = std::weak_ptr(process), status = conduct.status] {
    if (const auto alive = weak.lock()) {
      alive->exit(status);
    }
  };
  if (conduct.takes > 0.0) {
    m_world.postAfter(conduct.takes, finish);
  } else {
    finish();
  }
}

bool SimulatedTools::ping(const VirtualProcesses::Pointer& process) {
  m_findings.require(process->arguments == Arguments{"-c", "1", "-W", "2", "1.1.1.1"},
                     "the arguments of ping");
  Answer answer{"PING 1.1.1.1 (1.1.1.1) 56(84) bytes of data.\n\n1 packets transmitted\n", {}};
  Conduct conduct;
  if (m_dice.chance(conditions.cannotStart)) {
    m_sampling.probes(std::nullopt, Ticks::zero());
    ++lostProbes;
    return false;
  }
  if (m_dice.chance(conditions.garbage)) {
    answer = oddAnswers[m_dice.below(oddAnswers.size())];
  } else if (m_dice.chance(conditions.loss)) {
    conduct.takes = 2.0;
  } else {
    const double latency =
        std::max(0.1, conditions.latencyMs + conditions.spreadMs * m_dice.between(-1.0, 1.0));
    const std::string text = decimal(latency);
    answer = {FakeChildren::reply(text), std::strtod(text.c_str(), nullptr)};
    conduct.takes = latency / 1e3;
  }
  misbehave(conduct);
  if (conduct.floods) {
    answer = {"a great deal time=3.5 ms and so on\n", 3.5};
  }
  conduct.output = answer.output;
  conduct.status = answer.latency ? 0 : 1;
  const auto latency = isKept(conduct) ? answer.latency : std::nullopt;
  lostProbes += latency ? 0 : 1;
  m_sampling.probes(latency, duration(conduct, pingLimit));
  perform(process, conduct);
  return true;
}

bool SimulatedTools::listProcesses(const VirtualProcesses::Pointer& process) {
  m_findings.require(process->arguments == Arguments{}, "the arguments of nettop");
  if (m_dice.chance(conditions.cannotStart)) {
    m_model.listsProcesses(Ticks::zero(), true);
    return false;
  }
  Conduct conduct;
  conduct.takes = m_dice.oneOf({0.0, 0.0, 0.0, 1.02});
  misbehave(conduct);
  bool isEmpty = true;
  if (conduct.floods) {
    conduct.output = ",bytes_in,bytes_out,\ncurl.1,5,5,\nmail.2,9,0,\n";
    isEmpty = !isKept(conduct);
  } else if (m_dice.chance(conditions.garbage)) {
    conduct.output = m_dice.oneOf<std::string>(
        {"", std::string(5000, '\n'), "header only", ",bytes_in,bytes_out,\n\xC0\xAFx.1,5,5,\n"});
  } else if (CountedMemory::isScarce() && m_dice.chance(0.05)) {
    conduct.output = manyLines;
  } else {
    conduct.output = processTable(isEmpty);
  }
  m_model.listsProcesses(duration(conduct, conduct.isDeaf ? deafNettopLimit : nettopLimit),
                         isEmpty);
  m_model.launched(process->id);
  perform(process, conduct);
  return true;
}

std::string SimulatedTools::processTable(bool& isEmpty) {
  std::string table = ",bytes_in,bytes_out,\n";
  const std::size_t rows = m_dice.below(25);
  for (std::size_t row = 0; row < rows; ++row) {
    std::string name =
        m_dice.oneOf({"browser", "curl", "kernel_task", "mDNSResponder", "a.b", "mail", "x y"});
    const auto bytes = [this] {
      return std::to_string(m_dice.below(m_dice.oneOf<std::size_t>({1, 2, 1 << 30})));
    };
    const std::string in = bytes();
    const std::string out = bytes();
    const bool isHidden = name == "kernel_task" || name == "mDNSResponder";
    if (!isHidden) {
      name += std::to_string(m_dice.below(9)); // more programs than are listed
    }
    isEmpty = isEmpty && (isHidden || (in == "0" && out == "0"));
    table += name + '.' + std::to_string(m_dice.below(40'000)) + ',' + in + ',' + out + ",\n";
  }
  return table;
}

bool SimulatedTools::testSpeed(const VirtualProcesses::Pointer& process) {
  m_findings.require(process->arguments == Arguments{"-s", "-v"}, "the arguments of the test");
  if (m_dice.chance(conditions.cannotStart)) {
    m_model.testsSpeed(Ticks::zero(), std::nullopt);
    return false;
  }
  Conduct conduct;
  conduct.takes = m_dice.between(0.0, 40.0);
  misbehave(conduct);
  SpeedTestResult result;
  conduct.output = m_dice.oneOf({"", "\xFF Downlink capacity: 9 Mbps\n", "no network\n"});
  if (conduct.floods) {
    conduct.output = "line after line\n";
  } else if (!m_dice.chance(conditions.garbage)) {
    const auto megabits = static_cast<double>(m_dice.below(1000));
    result = {0.0, megabits, megabits / 2.0, static_cast<std::int64_t>(m_dice.below(3000))};
    conduct.output = "==== SUMMARY ====\nUplink capacity: " + decimal(megabits / 2.0) +
                     " Mbps\nDownlink capacity: " + decimal(megabits) +
                     " Mbps\nResponsiveness: High (" + std::to_string(result.responsiveness) +
                     " RPM)\n";
  }
  m_model.testsSpeed(duration(conduct, qualityLimit),
                     isKept(conduct) ? std::optional(result) : std::nullopt);
  perform(process, conduct);
  return true;
}

bool SimulatedTools::lookUp(const VirtualProcesses::Pointer& process) {
  m_findings.require(process->arguments == Arguments{"https://api.ipify.org"},
                     "the arguments of the lookup");
  ++lookups;
  if (m_dice.chance(conditions.cannotStart)) {
    return false;
  }
  Conduct conduct;
  misbehave(conduct);
  conduct.takes = conditions.lookupSeconds;
  conduct.hangs = conduct.hangs || conduct.takes > lookupLimit;
  conduct.output = conditions.body.value_or("");
  conduct.status = conditions.body ? 0 : 1;
  perform(process, conduct);
  return true;
}

bool SimulatedTools::sound(const VirtualProcesses::Pointer& process) {
  ++sounds;
  if (m_dice.chance(conditions.cannotStart)) {
    return false;
  }
  Conduct conduct;
  conduct.takes = 1.0;
  conduct.hangs = m_dice.chance(conditions.hangs);
  perform(process, conduct);
  return true;
}

} // namespace tidewell::test
