#include "helpers/networkQuality/SpeedTest.h"

#include "base/Translation.h"
#include "helpers/networkQuality/LineRun.h"
#include "platform/linux/files/FilePath.h"
#include "platform/linux/files/FileReading.h"

#include <algorithm>
#include <cstdlib>

namespace tidewell {
namespace {

constexpr std::size_t longestSettings = 65'536;
constexpr Seconds testLimit = 39.5; // of everything, including the end
constexpr Seconds lineLimit = 18.0;
constexpr Seconds requestLimit = 8.0;
constexpr std::size_t longestHello = 4096;

std::string documentAddress() {
  const char* const named = std::getenv("TIDEWELL_SPEEDTEST_CONFIG");
  if (named != nullptr && *named != '\0') {
    return named;
  }
  return addressInSettings(
      readFile(configurationDirectory() + "/tidewell/speedtest.conf", longestSettings).contents);
}

} // namespace

SpeedTest::SpeedTest(TransferLoop& loop, OnProgress onProgress)
    : m_loop(loop), m_onProgress(std::move(onProgress)), m_begin(TransferLoop::now()) {}

void SpeedTest::run() {
  const auto server = chooseServer();
  if (m_loop.isStopped()) {
    m_failure.reset();
  } else if (server) {
    measure(*server);
  }
}

std::optional<TestServer> SpeedTest::chooseServer() {
  const std::string document = documentAddress();
  if (document.empty()) {
    return defaultServer();
  }
  auto server = fetchServer(document);
  if (m_failure) {
    m_failure =
        std::string(translatable("the configuration document is of no use")) + ": " + *m_failure;
  }
  return server;
}

std::optional<TestServer> SpeedTest::fetchServer(const std::string& document) {
  if (!httpsHost(document)) {
    m_failure = translatable("its address has to begin with https:// and name a host");
    return std::nullopt;
  }
  const Destination destination({});
  Transfer transfer(destination, document);
  transfer.allowHttp1();
  transfer.keepBody(longestDocument);
  transfer.setLimit(requestLimit);
  m_loop.perform(transfer);
  m_failure = transfer.failure();
  if (m_failure) {
    return std::nullopt;
  }
  auto server = parseServerDocument(transfer.body());
  if (!server) {
    m_failure = translatable("it does not name three addresses of one server");
  }
  return server;
}

void SpeedTest::measure(const TestServer& server) {
  Destination destination(server.endpoint);
  {
    Transfer hello(destination, server.smallDownload);
    hello.keepBody(longestHello);
    hello.setLimit(requestLimit);
    m_loop.perform(hello);
    m_failure = hello.failure();
    destination.pin(hello.text(CURLINFO_PRIMARY_IP), hello.number(CURLINFO_PRIMARY_PORT));
  }
  for (const auto direction : {Direction::download, Direction::upload}) {
    if (m_failure || m_loop.isStopped()) {
      return;
    }
    const bool isDownload = direction == Direction::download;
    const Seconds now = TransferLoop::now();
    const Seconds left = m_begin + testLimit - now;
    LineRun line(m_loop, destination, server, direction);
    line.run(now + std::min(lineLimit, isDownload ? left / 2.0 : left), [&](double bytesPerSecond) {
      m_onProgress(isDownload ? "down" : "up", bytesPerSecond);
    });
    (isDownload ? m_result.download : m_result.upload) = line.result();
    m_failure = line.failure();
  }
}

} // namespace tidewell
