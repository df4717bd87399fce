#pragma once

#include "VirtualScheduler.h"
#include "platform/ChildProcess.h"
#include "platform/ConfigurationStore.h"
#include "platform/InterfaceCounters.h"
#include "platform/Platform.h"

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

/// Interfaces whose counters the test sets.
class FakeCounters final : public InterfaceCounters {
public:
  [[nodiscard]] std::optional<ByteCounts> read(const std::string& interface) override {
    reads.push_back(interface);
    const auto found = interfaces.find(interface);
    return found == interfaces.end() ? std::nullopt : std::optional(found->second);
  }

  std::map<std::string, ByteCounts> interfaces;
  std::vector<std::string> reads;
};

class FakeConfiguration final : public ConfigurationStore {
public:
  [[nodiscard]] std::optional<std::string> primaryInterface() override { return primary; }

  std::optional<std::string> primary = "eth0";
};

/// A child process that takes virtual time and answers from a script.
class FakeChildren final : public ChildProcess {
public:
  struct Run {
    std::string path;
    std::vector<std::string> arguments;
  };
  struct Answer {
    std::optional<std::string> output;
    Seconds takes = 0.0;
  };

  explicit FakeChildren(VirtualScheduler& scheduler) : m_scheduler(scheduler) {}

  [[nodiscard]] std::optional<std::string> run(const std::string& path,
                                               const std::vector<std::string>& arguments) override {
    runs.push_back({path, arguments});
    Answer answer = usual;
    if (!next.empty()) {
      answer = std::move(next.front());
      next.pop_front();
    }
    if (answer.takes > 0.0) {
      m_scheduler.block(answer.takes);
    }
    return answer.output;
  }

  /// Output of ping whose reply took this many milliseconds.
  static std::string reply(const std::string& milliseconds) {
    return "PING 1.1.1.1 (1.1.1.1) 56(84) bytes of data.\n"
           "64 bytes from 1.1.1.1: icmp_seq=1 ttl=57 time=" +
           milliseconds + " ms\n\n--- 1.1.1.1 ping statistics ---\n";
  }

  std::deque<Answer> next; // before `usual`
  Answer usual{reply("10.0"), 0.0};
  std::vector<Run> runs;

private:
  VirtualScheduler& m_scheduler;
};

/// A whole machine in virtual time.
struct FakeMachine {
  explicit FakeMachine(std::uint64_t seed = 1) : scheduler(seed) {}

  VirtualScheduler scheduler;
  VirtualClock clock{scheduler};
  FakeCounters counters;
  FakeConfiguration configuration;
  FakeChildren children{scheduler};
  Platform platform{scheduler, clock, counters, configuration, children};

  /// The counters of the primary interface.
  ByteCounts& bytes() { return counters.interfaces[configuration.primary.value_or("en0")]; }
};

} // namespace tidewell::test
