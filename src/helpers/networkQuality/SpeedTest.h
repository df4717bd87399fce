#pragma once

#include "helpers/networkQuality/Progress.h"
#include "helpers/networkQuality/ResultText.h"
#include "helpers/networkQuality/TestServer.h"
#include "helpers/networkQuality/TransferLoop.h"

#include <optional>
#include <string>

namespace tidewell {

/// Measures the line: first down, then up.
class SpeedTest {
public:
  /// Ends when the loop is stopped, at the latest 40 s after its construction.
  SpeedTest(TransferLoop& loop, Progress& progress);

  /// Measures against the server that the document of this address describes, or the default one.
  void run(const std::string& documentAddress);

  /// What was measured.
  [[nodiscard]] const TestResult& result() const { return m_result; }

  /// Why not everything was measured, in words; none unless something failed.
  [[nodiscard]] const std::optional<std::string>& failure() const { return m_failure; }

private:
  void measure(const TestServer& server);

  TransferLoop& m_loop;
  Progress& m_progress;
  Seconds m_begin;
  TestResult m_result;
  std::optional<std::string> m_failure;
};

} // namespace tidewell
