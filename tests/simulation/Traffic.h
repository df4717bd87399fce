#pragma once

#include "platform/InterfaceCounters.h"
#include "support/VirtualScheduler.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace tidewell::test {

/// Interfaces whose counters advance with virtual time at changeable rates.
class Traffic final : public InterfaceCounters {
public:
  /// `onRead` gets the result of every reading: zeros for a missing interface.
  Traffic(const VirtualScheduler& scheduler, std::function<void(const ByteCounts&)> onRead)
      : m_scheduler(scheduler), m_onRead(std::move(onRead)) {}

  [[nodiscard]] std::optional<ByteCounts> read(const std::string& interface) override {
    const auto found = m_interfaces.find(interface);
    const auto counts =
        found == m_interfaces.end() ? std::nullopt : std::optional(countsOf(found->second));
    m_onRead(counts.value_or(ByteCounts{}));
    return counts;
  }

  /// Sets the bytes per second; adds a missing interface.
  void setRates(const std::string& interface, double in, double out) {
    Flow& flow = m_interfaces[interface];
    flow = {countsOf(flow), m_scheduler.now(), in, out};
  }

  /// Sets the counters to these values, like a wrap or a new driver.
  void setCounts(const std::string& interface, const ByteCounts& counts) {
    Flow& flow = m_interfaces[interface];
    flow.counts = counts;
    flow.since = m_scheduler.now();
  }

  void remove(const std::string& interface) { m_interfaces.erase(interface); }

private:
  struct Flow {
    ByteCounts counts;
    Ticks since = Ticks::zero();
    double in = 0.0;
    double out = 0.0;
  };

  [[nodiscard]] ByteCounts countsOf(const Flow& flow) const {
    const double seconds = std::chrono::duration<double>(m_scheduler.now() - flow.since).count();
    return {flow.counts.bytesIn + static_cast<std::int64_t>(flow.in * seconds),
            flow.counts.bytesOut + static_cast<std::int64_t>(flow.out * seconds)};
  }

  const VirtualScheduler& m_scheduler;
  std::function<void(const ByteCounts&)> m_onRead;
  std::map<std::string, Flow> m_interfaces;
};

} // namespace tidewell::test
