#pragma once

#include "helpers/networkQuality/ResultText.h"
#include "helpers/networkQuality/TestServer.h"
#include "helpers/networkQuality/TransferLoop.h"

#include <functional>
#include <optional>
#include <string>

namespace tidewell {

/// Measures the line: first down, then up.
class SpeedTest {
public:
  using OnProgress = std::function<void(const char* direction, double bytesPerSecond)>;

  /// Ends when the loop is stopped, and at most 40 s after its construction.
  SpeedTest(TransferLoop& loop, OnProgress onProgress);

  /// Measures with the default server, or with the one that the user's configuration document
  /// describes. Its address is in the environment's `TIDEWELL_SPEEDTEST_CONFIG` or else in
  /// `tidewell/speedtest.conf` in the configuration directory.
  void run();

  /// What was measured.
  [[nodiscard]] const TestResult& result() const { return m_result; }

  /// Why not everything was measured, for people; nullopt unless something failed.
  [[nodiscard]] const std::optional<std::string>& failure() const { return m_failure; }

private:
  [[nodiscard]] std::optional<TestServer> chooseServer();
  [[nodiscard]] std::optional<TestServer> fetchServer(const std::string& document);
  void measure(const TestServer& server);

  TransferLoop& m_loop;
  OnProgress m_onProgress;
  Seconds m_begin;
  TestResult m_result;
  std::optional<std::string> m_failure;
};

} // namespace tidewell
