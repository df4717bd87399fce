#pragma once

#include "base/Scheduler.h"
#include "helpers/networkQuality/TcpTally.h"
#include "helpers/networkQuality/TestServer.h"
#include "helpers/networkQuality/Transfer.h"
#include "helpers/networkQuality/TransferLoop.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

enum class Direction { download, upload };

/// A connection that moves as much as it can in one direction, and on which round trips are
/// measured meanwhile.
class LoadConnection {
public:
  /// Begins to move. Calls `onRoundTrip` for every probe that was answered on this connection.
  LoadConnection(TransferLoop& loop, const Destination& destination, const TestServer& server,
                 Direction direction, std::function<void(Seconds)> onRoundTrip);
  ~LoadConnection();

  /// The bytes that have arrived, here or at the peer.
  [[nodiscard]] std::uint64_t moved() const;

  /// Adapts the unsent bytes in buffers to the speed since the last call, because they delay
  /// probes, and fails a connection that has moved nothing for five seconds. Call it several times
  /// a second.
  void tune(Seconds now);

  /// When its load moved last.
  [[nodiscard]] Seconds silentSince() const { return m_silentSince; }

  /// Begins to measure a round trip, unless the connection has moved nothing yet or two are under
  /// way.
  void probe();

  /// Why nothing moves any more, for people.
  [[nodiscard]] const std::optional<std::string>& failure() const { return m_failure; }

private:
  static std::size_t onRead(char* buffer, std::size_t one, std::size_t size, void* self);
  static int onSeek(void* self, curl_off_t offset, int origin);
  void adaptBuffers(double bytesPerSecond);
  void prepareUpload();
  void transferEnded();
  [[nodiscard]] std::optional<std::string> endFailure() const;
  void probeEnded(Transfer* probe);

  TransferLoop& m_loop;
  const Destination& m_destination;
  const TestServer& m_server;
  Direction m_direction;
  std::function<void(Seconds)> m_onRoundTrip;
  std::optional<std::string> m_failure;

  std::size_t m_piece;   // how much of a body is read at a time
  curl_off_t m_left = 0; // of the current body
  Seconds m_tunedAt;
  Seconds m_silentSince;
  std::uint64_t m_movedThen = 0;
  curl_off_t m_progressThen = 0;

  TcpTally m_tally;
  Transfer m_load;
  std::vector<std::unique_ptr<Transfer>> m_probes;
  TransferPool m_pool; // destroyed first, because it closes the connection that others count
};

} // namespace tidewell
