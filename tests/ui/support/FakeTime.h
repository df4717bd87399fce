#pragma once

#include "ui/components/ViewTime.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tidewell::test {

/// Time that a test advances.
class FakeTime {
public:
  [[nodiscard]] ViewTime time() const {
    return {[state = m_state] { return state->now; },
            [state = m_state](double seconds, std::function<void()> task) {
              state->pending.emplace_back(state->now + seconds, std::move(task));
            }};
  }

  /// Advances the time and runs the tasks that are due, in the order of their creation.
  void advance(double seconds) {
    m_state->now += seconds;
    for (auto& [due, task] : m_state->pending) {
      if (task && due <= m_state->now + 1e-9) {
        std::exchange(task, nullptr)();
      }
    }
  }

private:
  struct State {
    double now = 1000.0;
    std::vector<std::pair<double, std::function<void()>>> pending;
  };
  std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace tidewell::test
