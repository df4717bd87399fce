#pragma once

#include "helpers/networkQuality/ForeignProber.h"
#include "helpers/networkQuality/LineMeasurement.h"
#include "helpers/networkQuality/LoadConnection.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Loads one direction of the line and measures it.
class LineRun {
public:
  /// Everything that is borrowed outlives the run.
  LineRun(TransferLoop& loop, const Destination& destination, const TestServer& server,
          Direction direction);

  /// Runs until the measurement is done or fails, until `deadline` or until the loop is stopped.
  /// Calls `onInterval` once a second with the bytes per second.
  void run(Seconds deadline, const std::function<void(double)>& onInterval);

  /// Why it failed, for people; nullopt if it did not.
  [[nodiscard]] const std::optional<std::string>& failure() const { return m_failure; }

  /// What was measured; nullopt if the run failed or was too short.
  [[nodiscard]] std::optional<LineResult> result() const;

private:
  [[nodiscard]] bool isDone(Seconds now) const;
  void open();
  void endInterval(Seconds now);
  void replaceFailed();
  void probe();
  [[nodiscard]] std::uint64_t moved() const;

  TransferLoop& m_loop;
  const Destination& m_destination;
  const TestServer& m_server;
  Direction m_direction;
  LineMeasurement m_measurement;
  ForeignProber m_foreign;
  std::vector<std::unique_ptr<LoadConnection>> m_connections;
  std::uint64_t m_movedByClosed = 0;
  std::size_t m_failures = 0;
  std::size_t m_nextProbed = 0;
  std::optional<std::string> m_failure;
};

} // namespace tidewell
