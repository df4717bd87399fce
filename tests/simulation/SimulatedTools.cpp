#include "SimulatedTools.h"

#include "support/FakeMachine.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace tidewell::test {

namespace {

using Arguments = std::vector<std::string>;

/// An output of ping, and the latency that follows from it.
struct Answer {
  std::optional<std::string> output;
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

std::string decimal(double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.3f", value);
  return text.data();
}

} // namespace

std::optional<std::string> SimulatedTools::run(const std::string& path, const Arguments& arguments,
                                               const std::function<void(Id child)>& launched) {
  if (path == "/sbin/ping") {
    m_findings.require(arguments == Arguments{"-c", "1", "-W", "2000", "1.1.1.1"},
                       "the arguments of ping");
    return ping();
  }
  if (path == "/usr/bin/nettop") {
    m_findings.require(arguments == Arguments{"-P", "-L", "1", "-J", "bytes_in,bytes_out", "-x"},
                       "the arguments of nettop");
    return listProcesses(launched);
  }
  m_findings.require(path == "/usr/bin/networkQuality" && arguments == Arguments{"-s", "-v"},
                     "a tool that is not known", path);
  return testSpeed();
}

std::optional<std::string> SimulatedTools::ping() {
  Answer answer;
  double takes = 0.0;
  if (m_dice.chance(conditions.cannotStart)) {
    answer = {std::nullopt, std::nullopt};
  } else if (m_dice.chance(conditions.garbage)) {
    answer = oddAnswers[m_dice.below(oddAnswers.size())];
  } else if (m_dice.chance(conditions.loss)) {
    answer = {"PING 1.1.1.1 (1.1.1.1) 56(84) bytes of data.\n\n1 packets transmitted, 0 received\n",
              std::nullopt};
    takes = 2.0;
  } else {
    const double latency =
        std::max(0.1, conditions.latencyMs + conditions.spreadMs * m_dice.between(-1.0, 1.0));
    const std::string text = decimal(latency);
    answer = {FakeChildren::reply(text), std::strtod(text.c_str(), nullptr)};
    takes = latency / 1e3;
  }
  if (answer.output && m_dice.chance(conditions.hangs)) {
    takes = m_dice.between(0.5, 12.0);
  }
  lostProbes += answer.latency ? 0 : 1;
  m_sampling.probes(answer.latency, toTicks(takes));
  if (takes > 0.0) {
    m_scheduler.block(takes);
  }
  return answer.output;
}

std::optional<std::string>
SimulatedTools::listProcesses(const std::function<void(Id child)>& launched) {
  if (m_dice.chance(conditions.cannotStart)) {
    m_model.listsProcesses(Ticks::zero(), true);
    return std::nullopt;
  }
  const double takes = m_dice.chance(conditions.hangs) ? 4.0 : m_dice.oneOf({0.0, 0.0, 0.0, 1.02});
  bool isEmpty = true;
  std::string table;
  if (m_dice.chance(conditions.garbage)) {
    table = m_dice.oneOf({"", "\n\n\n", ",bytes_in,bytes_out,\n\xC0\xAFx.1,5,5,\n", "header only"});
  } else {
    table = processTable(isEmpty);
  }
  m_model.listsProcesses(toTicks(takes), isEmpty);
  const Id child = ++m_children;
  m_model.launched(child);
  launched(child);
  if (takes > 0.0) {
    m_scheduler.block(takes);
  }
  return table;
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

std::optional<std::string> SimulatedTools::testSpeed() {
  const double takes = m_dice.between(0.0, 40.0);
  if (m_dice.chance(conditions.cannotStart)) {
    m_model.testsSpeed(Ticks::zero(), std::nullopt);
    return std::nullopt;
  }
  SpeedTestResult result;
  std::string output = m_dice.oneOf({"", "\xFF Downlink capacity: 9 Mbps\n", "no network\n"});
  if (!m_dice.chance(conditions.garbage)) {
    const auto megabits = static_cast<double>(m_dice.below(1000));
    result = {0.0, megabits, megabits / 2.0, static_cast<std::int64_t>(m_dice.below(3000))};
    output = "==== SUMMARY ====\nUplink capacity: " + decimal(megabits / 2.0) +
             " Mbps\nDownlink capacity: " + decimal(megabits) + " Mbps\nResponsiveness: High (" +
             std::to_string(result.responsiveness) + " RPM)\n";
  }
  m_model.testsSpeed(toTicks(takes), result);
  if (takes > 0.0) {
    m_scheduler.block(takes);
  }
  return output;
}

} // namespace tidewell::test
