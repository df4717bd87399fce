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

/// One connection that moves as much as it can in one direction, and is asked how long a round trip
/// takes on it meanwhile.
class LoadConnection {
public:
  /// Begins to move. `onRoundTrip` hears of every probe that was answered on this connection.
  LoadConnection(TransferLoop& loop, const Route& route, const TestServer& server,
                 Direction direction, std::function<void(Seconds)> onRoundTrip);
  LoadConnection(const LoadConnection&) = delete;
  LoadConnection& operator=(const LoadConnection&) = delete;
  ~LoadConnection();

  /// Bytes that have arrived, here or at the other end.
  [[nodiscard]] std::uint64_t moved() const;

  /// Adapts what waits in buffers to the speed since the last call, because a probe waits behind
  /// it, and fails a connection that has moved nothing for long. Call it several times a second.
  void tune(Seconds now);

  /// Since when no more of its load has been moved.
  [[nodiscard]] Seconds silentSince() const { return m_silentSince; }

  /// Asks for a round trip; does nothing before the connection stands or while two are under way.
  void probe();

  /// Why nothing is moved any more, in words.
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
  const Route& m_route;
  const TestServer& m_server;
  Direction m_direction;
  std::function<void(Seconds)> m_onRoundTrip;
  std::optional<std::string> m_failure;

  std::size_t m_piece;   // how much of a body is taken at a time
  curl_off_t m_left = 0; // of the present body
  Seconds m_tunedAt;
  Seconds m_silentSince;
  std::uint64_t m_movedThen = 0;
  curl_off_t m_progressThen = 0;

  TcpTally m_tally;
  Transfer m_load;
  std::vector<std::unique_ptr<Transfer>> m_probes;
  TransferPool m_pool; // goes first: it closes the connection that others count
};

} // namespace tidewell
