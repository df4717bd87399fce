#include "speedtest/SpeedTestRunner.h"

#include "base/Clock.h"
#include "base/IfMemoryAllows.h"
#include "base/Translation.h"
#include "base/Utf8.h"
#include "platform/ChildProcess.h"
#include "platform/Platform.h"
#include "speedtest/NetworkQualityOutput.h"

#include <string>
#include <string_view>

namespace tidewell {

SpeedTestRunner::SpeedTestRunner(const Platform& platform)
    : m_main(platform.scheduler.main()), m_background(platform.scheduler.background()),
      m_clock(platform.clock), m_children(platform.children) {}

void SpeedTestRunner::run() {
  if (isRunning.get()) {
    return;
  }
  isRunning.set(true);
  m_background.post([weak = weak_from_this(), &children = m_children, &main = m_main,
                     &clock = m_clock] { return execute(weak, children, main, clock); });
}

Async<> SpeedTestRunner::execute(std::weak_ptr<SpeedTestRunner> runner, ChildProcess& children,
                                 WorkQueue& main, Clock& clock) {
  const ToolCall test{Tool::lineTest, {}, 0.0};
  const std::optional<std::string> output = co_await children.run(test);
  std::optional<SpeedTestResult> result;
  std::string reason;
  const bool isParsed = ifMemoryAllows([&] {
    if (output) {
      const auto text = isUtf8(*output) ? std::string_view(*output) : std::string_view();
      reason = networkQualityFailure(text);
      result = parseNetworkQualityOutput(text, clock.now());
    }
  });
  if (!isParsed) {
    result.reset();
  }
  main.post([runner, result, reason] {
    if (const auto self = runner.lock()) {
      self->finish(result, reason);
    }
  });
}

void SpeedTestRunner::finish(const std::optional<SpeedTestResult>& result,
                             const std::string& reason) {
  if (result && hasMeasured(*result)) {
    lastMeasured.set(result);
    failure.set({});
  } else if (result) {
    failure.set(reason.empty() ? translatable("nothing was measured") : reason);
  } else {
    failure.set(translatable("the measuring program could not be started"));
  }
  lastResult.set(result);
  isRunning.set(false);
}

} // namespace tidewell
