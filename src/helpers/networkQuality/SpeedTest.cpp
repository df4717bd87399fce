#include "helpers/networkQuality/SpeedTest.h"

#include "helpers/networkQuality/LineRun.h"
#include "helpers/networkQuality/ServerChoice.h"
#include "helpers/networkQuality/SingleTransfer.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr Seconds limit = 39.5; // of everything, with what it takes to end
constexpr Seconds lineLimit = 18.0;
constexpr Seconds helloLimit = 8.0;
constexpr std::size_t longestHello = 4096;

} // namespace

SpeedTest::SpeedTest(TransferLoop& loop, Progress& progress)
    : m_loop(loop), m_progress(progress), m_begin(TransferLoop::now()) {}

void SpeedTest::run(const std::string& documentAddress) {
  const ServerChoice choice = chooseServer(m_loop, documentAddress);
  if (choice.server) {
    measure(*choice.server);
  } else if (!m_loop.isStopped()) {
    m_failure = choice.failure;
  }
}

void SpeedTest::measure(const TestServer& server) {
  Route route(server.endpoint);
  {
    Transfer hello(route, server.smallDownload);
    hello.keepBody(longestHello);
    hello.setLimit(helloLimit);
    performAlone(m_loop, hello);
    m_failure = hello.failure();
    route.pin(hello.text(CURLINFO_PRIMARY_IP), hello.number(CURLINFO_PRIMARY_PORT));
  }
  for (const auto direction : {Direction::download, Direction::upload}) {
    if (m_failure || m_loop.isStopped()) {
      return;
    }
    const bool isDownload = direction == Direction::download;
    const Seconds now = TransferLoop::now();
    const Seconds left = m_begin + limit - now;
    LineRun line(m_loop, route, server, direction);
    line.run(now + std::min(lineLimit, isDownload ? left / 2.0 : left), [&](double bytesPerSecond) {
      m_progress.show(isDownload ? "down" : "up", bytesPerSecond);
    });
    (isDownload ? m_result.download : m_result.upload) = line.result();
    m_failure = line.failure();
  }
}

} // namespace tidewell
