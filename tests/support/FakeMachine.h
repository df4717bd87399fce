#pragma once

#include "platform/ChildProcess.h"
#include "platform/ConfigurationStore.h"
#include "platform/HttpClient.h"
#include "platform/InterfaceAddresses.h"
#include "platform/InterfaceCounters.h"
#include "platform/NotificationCenter.h"
#include "platform/PathMonitor.h"
#include "platform/Platform.h"
#include "support/VirtualScheduler.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
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
    atRead();
    const auto found = interfaces.find(interface);
    return found == interfaces.end() ? std::nullopt : std::optional(found->second);
  }

  std::map<std::string, ByteCounts> interfaces;
  std::vector<std::string> reads;
  std::function<void()> atRead = [] {};
};

class FakeConfiguration final : public ConfigurationStore {
public:
  [[nodiscard]] std::optional<std::string> primaryInterface() override { return primary; }
  [[nodiscard]] std::optional<std::string> wifiNetworkName() override {
    ++wifiLookups;
    return wifiName;
  }
  [[nodiscard]] Async<std::optional<std::vector<std::string>>> dnsServers() override {
    ++dnsLookups;
    co_return servers;
  }

  std::optional<std::string> primary = "eth0";
  std::optional<std::string> wifiName;
  std::optional<std::vector<std::string>> servers;
  int wifiLookups = 0;
  int dnsLookups = 0;
};

class FakeAddresses final : public InterfaceAddresses {
public:
  [[nodiscard]] std::optional<std::string> firstIPv4(const std::string& interface) override {
    const auto found = interfaces.find(interface);
    return found == interfaces.end() ? std::nullopt : std::optional(found->second);
  }

  std::map<std::string, std::string> interfaces;
};

/// A child process that takes virtual time and answers from a script.
class FakeChildren final : public ChildProcess {
public:
  struct Answer {
    std::optional<std::string> output;
    Seconds takes = 0.0;
  };

  explicit FakeChildren(VirtualScheduler& scheduler) : m_scheduler(scheduler) {}

  using ChildProcess::run;
  [[nodiscard]] Async<std::optional<std::string>>
  run(ToolCall call, std::function<void(Id child)> launched) override {
    runs.push_back(std::move(call));
    Answer answer = usual;
    if (!next.empty()) {
      answer = std::move(next.front());
      next.pop_front();
    }
    if (answer.output && launched) {
      launched(static_cast<Id>(runs.size()));
    }
    if (answer.takes > 0.0) {
      co_await m_scheduler.sleep(answer.takes);
    }
    co_return answer.output;
  }
  void terminate(Id child) override { terminated.emplace_back(child, m_scheduler.now()); }

  /// Ping's output for a reply after this many milliseconds.
  static std::string reply(const std::string& milliseconds) {
    return "PING 1.1.1.1 (1.1.1.1) 56(84) bytes of data.\n"
           "64 bytes from 1.1.1.1: icmp_seq=1 ttl=57 time=" +
           milliseconds + " ms\n\n--- 1.1.1.1 ping statistics ---\n";
  }

  std::deque<Answer> next; // used before `usual`
  Answer usual{reply("10.0"), 0.0};
  std::vector<ToolCall> runs;
  std::vector<std::pair<Id, Ticks>> terminated;

private:
  VirtualScheduler& m_scheduler;
};

/// An echo endpoint that takes virtual time to answer.
class FakeHttp final : public HttpClient {
public:
  explicit FakeHttp(VirtualScheduler& scheduler) : m_scheduler(scheduler) {}

  [[nodiscard]] Async<std::optional<std::string>> get(std::string url, Seconds wait) override {
    requests.push_back(url);
    const bool isInTime = takes <= wait;
    if (takes > 0.0) {
      co_await m_scheduler.sleep(std::min(takes, wait));
    }
    co_return isInTime ? body : std::nullopt;
  }

  std::optional<std::string> body = "203.0.113.7\n";
  Seconds takes = 0.0;
  std::vector<std::string> requests;

private:
  VirtualScheduler& m_scheduler;
};

/// A path that the test changes.
class FakePaths final : public PathMonitor {
public:
  [[nodiscard]] std::unique_ptr<PathWatch> watch(WorkQueue& queue, Handler handler) override {
    m_watching = std::make_shared<Watching>(Watching{queue, std::move(handler)});
    if (m_path) {
      report(*m_path);
    }
    return std::make_unique<Watch>(m_watching);
  }
  /// Changes the path. From now on it is also reported when a watch starts.
  void become(const PathReport& path) {
    if (m_path != path) {
      m_path = path;
      report(path);
    }
  }
  /// Reports a path to all watchers.
  void report(const PathReport& path) {
    if (const auto watching = m_watching; watching && watching->active) {
      watching->queue.post([watching, path] {
        if (watching->active) {
          watching->handler(path);
        }
      });
    }
  }
  [[nodiscard]] bool isWatched() const { return m_watching && m_watching->active; }

private:
  struct Watching {
    WorkQueue& queue;
    Handler handler;
    bool active = true;
  };
  class Watch final : public PathWatch {
  public:
    explicit Watch(std::shared_ptr<Watching> watching) : m_watching(std::move(watching)) {}
    ~Watch() override { m_watching->active = false; }

  private:
    std::shared_ptr<Watching> m_watching;
  };

  std::shared_ptr<Watching> m_watching;
  std::optional<PathReport> m_path;
};

/// Records notices instead of showing them.
class FakeNotificationCenter final : public NotificationCenter {
public:
  void requestAuthorization() override { ++authorizations; }
  void add(NotificationRequest request) override {
    requests.push_back(std::move(request));
    atAdd();
  }
  [[nodiscard]] std::vector<std::string> identifiers() const {
    std::vector<std::string> result;
    std::ranges::transform(requests, std::back_inserter(result), &NotificationRequest::identifier);
    return result;
  }

  int authorizations = 0;
  std::vector<NotificationRequest> requests;
  std::function<void()> atAdd = [] {};
};

/// A whole machine in virtual time.
struct FakeMachine {
  explicit FakeMachine(std::uint64_t seed = 1) : scheduler(seed) {}

  VirtualScheduler scheduler;
  VirtualClock clock{scheduler};
  FakeCounters counters;
  FakeConfiguration configuration;
  FakeAddresses addresses;
  FakeChildren children{scheduler};
  FakeHttp http{scheduler};
  FakePaths paths;
  Platform platform{scheduler, clock, counters, configuration, addresses, paths, http, children};

  /// The counters of the primary interface.
  ByteCounts& bytes() { return counters.interfaces[configuration.primary.value_or("en0")]; }
};

} // namespace tidewell::test
