#pragma once

#include "base/Ticks.h"
#include "support/VirtualScheduler.h"

#include <chrono>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace tidewell::test {

/// Keeps the first broken rule as text, with the virtual time. Later ones are mostly consequences.
class Findings {
public:
  explicit Findings(const VirtualScheduler& scheduler) : m_scheduler(scheduler) {}

  /// Records that `rule` is broken unless it holds, with the values.
  template <class... Values>
  void require(bool holds, std::string_view rule, const Values&... values) {
    if (!holds && !m_first) {
      std::ostringstream text;
      text.precision(17);
      const double seconds = std::chrono::duration<double>(m_scheduler.now()).count();
      text << "after " << seconds << " s (day " << static_cast<int>(seconds / 86400.0) + 1
           << "): " << rule << ':';
      ((text << ' ' << values), ...);
      m_first = text.str();
    }
  }

  [[nodiscard]] const std::optional<std::string>& first() const { return m_first; }

private:
  const VirtualScheduler& m_scheduler;
  std::optional<std::string> m_first;
};

} // namespace tidewell::test
