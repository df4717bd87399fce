#include "speedtest/SpeedTestRunner.h"

#include "base/Clock.h"
#include "base/IfMemoryAllows.h"
#include "base/Utf8.h"
#include "platform/ChildProcess.h"
#include "platform/Platform.h"
#include "speedtest/NetworkQualityOutput.h"

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
  m_background.post([weak = weak_from_this(), &main = m_main] {
    const auto runner = weak.lock();
    const auto result = runner ? runner->executeTest() : std::nullopt;
    main.post([weak, result] {
      if (const auto self = weak.lock()) {
        self->lastResult.set(result);
        self->isRunning.set(false);
      }
    });
  });
}

std::optional<SpeedTestResult> SpeedTestRunner::executeTest() {
  const auto output = m_children.run("/usr/bin/networkQuality", {"-s", "-v"});
  if (!output) {
    return std::nullopt;
  }
  std::optional<SpeedTestResult> result;
  const bool isParsed = ifMemoryAllows([&] {
    result = parseNetworkQualityOutput(
        isUtf8(*output) ? std::string_view(*output) : std::string_view(), m_clock.now());
  });
  return isParsed ? result : std::nullopt;
}

} // namespace tidewell
