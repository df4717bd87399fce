#include "helpers/networkQuality/LoadConnection.h"

#include "base/Translation.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace tidewell {
namespace {

constexpr curl_off_t uploadBytes = 100'000'000; // some servers refuse a larger body
// libcurl 7.88 sometimes sends a piece twice while a probe waits to be sent, and the server resets
// a body that is longer than announced. The line has carried all of it nevertheless.
constexpr curl_off_t nearlyAllUploaded = uploadBytes / 10 * 9;
constexpr curl_off_t leastDownload = 1'000'000;
constexpr std::size_t mostSelfProbes = 2;
constexpr std::size_t largestPiece = 65'536;
constexpr std::size_t smallestPiece = 1400; // a packet
constexpr std::size_t firstPiece = 16'384;
// A packet that is lost several times in a row takes so long.
constexpr Seconds longestSilence = 5.0;
constexpr double unsentSeconds = 0.005;
constexpr double mostUnsent = 4e6;
constexpr double leastUnsent = 4096;

/// Bytes that cannot be compressed.
const std::array<char, largestPiece>& noise() {
  static const auto bytes = [] {
    std::array<char, largestPiece> made{};
    std::uint64_t state = 0x9e3779b97f4a7c15U; // xorshift
    for (char& byte : made) {
      state ^= state << 13U;
      state ^= state >> 7U;
      state ^= state << 17U;
      byte = static_cast<char>(state & 0xffU);
    }
    return made;
  }();
  return bytes;
}

} // namespace

LoadConnection::LoadConnection(TransferLoop& loop, const Destination& destination,
                               const TestServer& server, Direction direction,
                               std::function<void(Seconds)> onRoundTrip)
    : m_loop(loop), m_destination(destination), m_server(server), m_direction(direction),
      m_onRoundTrip(std::move(onRoundTrip)), m_piece(firstPiece), m_tunedAt(TransferLoop::now()),
      m_silentSince(m_tunedAt),
      m_load(destination, direction == Direction::download ? server.largeDownload : server.upload),
      m_pool(loop, 1) {
  m_tally.count(m_load.handle());
  m_load.onFinished([this] { transferEnded(); });
  if (direction == Direction::upload) {
    prepareUpload();
  }
  m_pool.add(m_load);
}

LoadConnection::~LoadConnection() {
  m_pool.remove(m_load);
  for (const auto& probe : m_probes) {
    m_pool.remove(*probe);
  }
}

void LoadConnection::prepareUpload() {
  CURL* const handle = m_load.handle();
  m_left = uploadBytes;
  curl_easy_setopt(handle, CURLOPT_POST, 1L);
  curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, uploadBytes);
  curl_easy_setopt(handle, CURLOPT_UPLOAD_BUFFERSIZE, long{largestPiece});
  curl_easy_setopt(handle, CURLOPT_READFUNCTION, &onRead);
  curl_easy_setopt(handle, CURLOPT_READDATA, this);
  curl_easy_setopt(handle, CURLOPT_SEEKFUNCTION, &onSeek);
  curl_easy_setopt(handle, CURLOPT_SEEKDATA, this);
  m_load.keepBody(leastDownload); // the server's reply to it
}

std::uint64_t LoadConnection::moved() const {
  const TcpCounts counts = m_tally.counts();
  return m_direction == Direction::download ? counts.received : counts.acknowledged;
}

void LoadConnection::tune(Seconds now) {
  if (now <= m_tunedAt) {
    return;
  }
  const std::uint64_t bytes = moved();
  // Not the connection's bytes, which include those of probes.
  const curl_off_t progress =
      m_direction == Direction::upload ? m_left : m_load.amount(CURLINFO_SIZE_DOWNLOAD_T);
  if (progress != m_progressThen) {
    m_silentSince = now;
  } else if (now - m_silentSince > longestSilence && !m_failure) {
    m_failure = translatable("the server moves nothing any more");
  }
  if (m_direction == Direction::upload && m_tally.isOpen()) {
    adaptBuffers(static_cast<double>(bytes - m_movedThen) / (now - m_tunedAt));
  }
  m_tunedAt = now;
  m_movedThen = bytes;
  m_progressThen = progress;
}

void LoadConnection::adaptBuffers(double bytesPerSecond) {
  const double wait = bytesPerSecond * unsentSeconds;
  m_tally.limitUnsent(static_cast<std::uint32_t>(std::clamp(wait, leastUnsent, mostUnsent)));
  m_piece = std::clamp(static_cast<std::size_t>(wait), smallestPiece, largestPiece);
}

void LoadConnection::probe() {
  if (moved() == 0 || m_probes.size() >= mostSelfProbes || m_failure) {
    return;
  }
  m_probes.push_back(std::make_unique<Transfer>(m_destination, m_server.smallDownload));
  Transfer& probe = *m_probes.back();
  curl_easy_setopt(probe.handle(), CURLOPT_PIPEWAIT, 1L);
  m_tally.count(probe.handle());
  probe.keepBody(smallestPiece);
  probe.onFinished([this, &probe] { probeEnded(&probe); });
  m_pool.add(probe);
}

void LoadConnection::probeEnded(Transfer* probe) {
  // A probe on a connection of its own says nothing about this one.
  const bool isOnThisConnection = probe->number(CURLINFO_NUM_CONNECTS) == 0;
  if (!probe->failure() && isOnThisConnection) {
    m_onRoundTrip(probe->roundTrip());
  }
  std::erase_if(m_probes, [probe](const auto& other) { return other.get() == probe; });
}

void LoadConnection::transferEnded() {
  m_failure = endFailure();
  if (!m_failure) {
    m_left = uploadBytes;
    m_pool.add(m_load);
  }
}

std::optional<std::string> LoadConnection::endFailure() const {
  const auto failure = m_load.failure();
  if (m_direction == Direction::download) {
    const bool isShort = m_load.amount(CURLINFO_SIZE_DOWNLOAD_T) < leastDownload;
    return failure || !isShort ? failure
                               : std::optional<std::string>(translatable(
                                     "the server's large download is too short to measure by"));
  }
  const curl_off_t sent = m_load.amount(CURLINFO_SIZE_UPLOAD_T);
  if (m_load.wasReset() && sent >= nearlyAllUploaded) {
    return std::nullopt;
  }
  return failure || sent >= uploadBytes ? failure
                                        : std::optional<std::string>(translatable(
                                              "the server does not take what is sent to it"));
}

std::size_t LoadConnection::onRead(char* buffer, std::size_t one, std::size_t size, void* self) {
  auto& connection = *static_cast<LoadConnection*>(self);
  const auto bytes =
      std::min({one * size, connection.m_piece, static_cast<std::size_t>(connection.m_left)});
  std::memcpy(buffer, noise().data(), bytes);
  connection.m_left -= static_cast<curl_off_t>(bytes);
  connection.m_loop.noteSending();
  return bytes;
}

int LoadConnection::onSeek(void* self, curl_off_t offset, int origin) {
  if (origin != SEEK_SET || offset < 0 || offset > uploadBytes) {
    return CURL_SEEKFUNC_CANTSEEK;
  }
  static_cast<LoadConnection*>(self)->m_left = uploadBytes - offset;
  return CURL_SEEKFUNC_OK;
}

} // namespace tidewell
