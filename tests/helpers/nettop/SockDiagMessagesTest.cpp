#include "helpers/nettop/SockDiagMessages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>

namespace tidewell::nettop {
namespace {

using Bytes = std::vector<std::byte>;
using End = SockDiagMessages::End;

template <class T> void append(Bytes& bytes, const T& value, std::size_t size = sizeof(T)) {
  const auto* const begin = reinterpret_cast<const std::byte*>(&value);
  bytes.insert(bytes.end(), begin, begin + size);
  bytes.resize((bytes.size() + 3) / 4 * 4);
}

Bytes message(std::uint16_t type, const Bytes& payload) {
  nlmsghdr header{};
  header.nlmsg_len = static_cast<std::uint32_t>(sizeof header + payload.size());
  header.nlmsg_type = type;
  Bytes bytes;
  append(bytes, header);
  bytes.insert(bytes.end(), payload.begin(), payload.end());
  return bytes;
}

tcp_info counters() {
  tcp_info info{};
  info.tcpi_options = TCPI_OPT_TIMESTAMPS;
  info.tcpi_bytes_received = 1000;
  info.tcpi_segs_in = 10;
  info.tcpi_bytes_sent = 500;
  info.tcpi_segs_out = 5;
  return info;
}

inet_diag_msg ipv4Socket(const char* local, const char* remote) {
  inet_diag_msg socket{};
  socket.idiag_family = AF_INET;
  socket.idiag_inode = 77;
  socket.idiag_uid = 1000;
  socket.id.idiag_cookie[0] = 0x11111111;
  socket.id.idiag_cookie[1] = 0x22222222;
  inet_pton(AF_INET, local, socket.id.idiag_src);
  inet_pton(AF_INET, remote, socket.id.idiag_dst);
  return socket;
}

inet_diag_msg ipv6Socket(const char* local, const char* remote) {
  inet_diag_msg socket{};
  socket.idiag_family = AF_INET6;
  inet_pton(AF_INET6, local, socket.id.idiag_src);
  inet_pton(AF_INET6, remote, socket.id.idiag_dst);
  return socket;
}

Bytes payload(const inet_diag_msg& socket, const tcp_info& info,
              std::size_t infoSize = sizeof(tcp_info)) {
  nlattr other{sizeof(nlattr) + 1, INET_DIAG_SHUTDOWN};
  nlattr attribute{static_cast<std::uint16_t>(sizeof(nlattr) + infoSize), INET_DIAG_INFO};
  Bytes bytes;
  append(bytes, socket);
  append(bytes, other);
  append(bytes, std::uint8_t{1});
  append(bytes, attribute);
  append(bytes, info, infoSize);
  return bytes;
}

TcpReading readOne(const inet_diag_msg& socket, const tcp_info& info = counters()) {
  const auto result = parseSockDiag(message(SOCK_DIAG_BY_FAMILY, payload(socket, info)));
  EXPECT_EQ(result.readings.size(), 1U);
  return result.readings.empty() ? TcpReading{} : result.readings[0];
}

TEST(SockDiag, ReadsASocketsCountersAsIpBytes) {
  const TcpReading socket = readOne(ipv4Socket("192.168.1.2", "1.1.1.1"));
  EXPECT_EQ(socket.cookie, 0x2222222211111111U);
  EXPECT_EQ(socket.inode, 77U);
  EXPECT_EQ(socket.user, 1000U);
  EXPECT_EQ(socket.received, 1000U + 10 * 52);
  EXPECT_EQ(socket.sent, 500U + 5 * 52);
  EXPECT_FALSE(socket.isLoopback);
}

TEST(SockDiag, KnowsTheHeadersOfBothVersionsAndOfTimestamps) {
  tcp_info info = counters();
  EXPECT_EQ(readOne(ipv6Socket("fd00::2", "2001:db8::1"), info).sent, 500U + 5 * 72);
  EXPECT_EQ(readOne(ipv6Socket("::ffff:10.0.0.1", "::ffff:10.0.0.2"), info).sent, 500U + 5 * 52);
  info.tcpi_options = 0;
  EXPECT_EQ(readOne(ipv4Socket("10.0.0.1", "10.0.0.2"), info).sent, 500U + 5 * 40);
}

TEST(SockDiag, KnowsTheLoopbackByItsAddresses) {
  EXPECT_TRUE(readOne(ipv4Socket("127.0.0.1", "127.0.0.53")).isLoopback);
  EXPECT_TRUE(readOne(ipv4Socket("192.168.1.2", "192.168.1.2")).isLoopback);
  EXPECT_TRUE(readOne(ipv6Socket("::1", "::1")).isLoopback);
  EXPECT_TRUE(readOne(ipv6Socket("::ffff:127.0.0.1", "::ffff:127.0.0.1")).isLoopback);
  EXPECT_FALSE(readOne(ipv6Socket("fd00::2", "fd00::1")).isLoopback);
  EXPECT_FALSE(readOne(ipv4Socket("127.0.0.1", "128.0.0.1")).isLoopback);
}

TEST(SockDiag, GivesTheTwoEndsOfAConnectionTheSameNames) {
  const TcpReading mapped = readOne(ipv6Socket("::ffff:10.0.0.1", "::ffff:10.0.0.2"));
  const TcpReading plain = readOne(ipv4Socket("10.0.0.2", "10.0.0.1"));
  EXPECT_EQ(mapped.local, plain.remote);
  EXPECT_EQ(mapped.remote, plain.local);
}

TEST(SockDiag, TakesCountersThatAnOlderKernelLacksAsZero) {
  const auto socket = ipv4Socket("10.0.0.1", "10.0.0.2");
  const auto size = offsetof(tcp_info, tcpi_bytes_sent);
  const auto result =
      parseSockDiag(message(SOCK_DIAG_BY_FAMILY, payload(socket, counters(), size)));
  ASSERT_EQ(result.readings.size(), 1U);
  EXPECT_EQ(result.readings[0].received, 1000U + 10 * 52);
  EXPECT_EQ(result.readings[0].sent, 5U * 52);
}

TEST(SockDiag, TellsHowAnAnswerEnds) {
  const Bytes one =
      message(SOCK_DIAG_BY_FAMILY, payload(ipv4Socket("1.2.3.4", "5.6.7.8"), counters()));
  Bytes both = one;
  const Bytes done = message(NLMSG_DONE, Bytes(4));
  both.insert(both.end(), done.begin(), done.end());
  both.insert(both.end(), one.begin(), one.end());
  EXPECT_EQ(parseSockDiag(one).end, End::none);
  EXPECT_EQ(parseSockDiag(both).end, End::done);
  EXPECT_EQ(parseSockDiag(both).readings.size(), 1U);
  EXPECT_EQ(parseSockDiag(message(NLMSG_ERROR, Bytes(20))).end, End::failed);
  EXPECT_EQ(parseSockDiag({}).end, End::none);
}

TEST(SockDiag, SkipsWhatIsNoSocket) {
  auto unix = ipv4Socket("1.2.3.4", "5.6.7.8");
  unix.idiag_family = AF_UNIX;
  EXPECT_TRUE(
      parseSockDiag(message(SOCK_DIAG_BY_FAMILY, payload(unix, counters()))).readings.empty());
  const auto socket = ipv4Socket("1.2.3.4", "5.6.7.8");
  EXPECT_TRUE(parseSockDiag(message(4711, payload(socket, counters()))).readings.empty());
  Bytes bare;
  append(bare, socket);
  EXPECT_TRUE(parseSockDiag(message(SOCK_DIAG_BY_FAMILY, bare)).readings.empty()) << "no counters";
}

TEST(SockDiag, SurvivesEveryTruncation) {
  const Bytes whole =
      message(SOCK_DIAG_BY_FAMILY, payload(ipv4Socket("1.2.3.4", "5.6.7.8"), counters()));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_TRUE(parseSockDiag(cut).readings.empty()) << size;
  }
}

TEST(SockDiag, SurvivesLengthsThatLie) {
  const Bytes whole =
      message(SOCK_DIAG_BY_FAMILY, payload(ipv4Socket("1.2.3.4", "5.6.7.8"), counters()));
  std::mt19937 dice(1); // NOLINT(cert-msc51-cpp): the same bytes every time
  for (int round = 0; round < 20'000; ++round) {
    // On the heap at its exact size, so that a sanitizer sees every step beyond.
    Bytes bent(whole.begin(),
               whole.begin() + static_cast<std::ptrdiff_t>(dice() % (whole.size() + 1)));
    for (int change = 0; change < 4 && !bent.empty(); ++change) {
      bent[dice() % bent.size()] = static_cast<std::byte>(dice());
    }
    EXPECT_LE(parseSockDiag(bent).readings.size(), 1U);
  }
}

TEST(SockDiag, AsksForSocketsThatCanMoveSomething) {
  const Bytes question = tcpQuestion(AF_INET6);
  ASSERT_EQ(question.size(), sizeof(nlmsghdr) + sizeof(inet_diag_req_v2));
  inet_diag_req_v2 request{};
  std::memcpy(&request, question.data() + sizeof(nlmsghdr), sizeof request);
  EXPECT_EQ(request.sdiag_family, AF_INET6);
  EXPECT_EQ(request.idiag_states & (1U << 10 | 1U << 6), 0U)
      << "neither listening nor waiting ones";
  EXPECT_NE(request.idiag_states & (1U << 1), 0U) << "established ones";
}

} // namespace
} // namespace tidewell::nettop
