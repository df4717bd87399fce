#include "helpers/nettop/SockDiag.h"

#include "support/Damage.h"
#include "support/NetlinkMessage.h"

#include <gtest/gtest.h>

#include <cstring>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <linux/tcp.h>

namespace tidewell::nettop {
namespace {

using test::NetlinkMessage;
using Bytes = std::vector<std::byte>;

tcp_info counters() {
  tcp_info info{};
  info.tcpi_options = TCPI_OPT_TIMESTAMPS;
  info.tcpi_bytes_received = 1000;
  info.tcpi_segs_in = 10;
  info.tcpi_bytes_sent = 500;
  info.tcpi_segs_out = 5;
  return info;
}

inet_diag_msg socketOf(std::uint8_t family, const char* local, const char* remote) {
  inet_diag_msg socket{};
  socket.idiag_family = family;
  socket.idiag_inode = 77;
  socket.idiag_uid = 1000;
  socket.id.idiag_cookie[0] = 0x11111111;
  socket.id.idiag_cookie[1] = 0x22222222;
  inet_pton(family, local, socket.id.idiag_src);
  inet_pton(family, remote, socket.id.idiag_dst);
  return socket;
}

inet_diag_msg ipv4Socket(const char* local, const char* remote) {
  return socketOf(AF_INET, local, remote);
}

inet_diag_msg ipv6Socket(const char* local, const char* remote) {
  return socketOf(AF_INET6, local, remote);
}

Bytes message(const inet_diag_msg& socket, const tcp_info& info = counters(),
              std::size_t infoSize = sizeof(tcp_info), std::uint16_t type = SOCK_DIAG_BY_FAMILY) {
  return NetlinkMessage(type, socket)
      .number(INET_DIAG_SHUTDOWN, std::uint8_t{1})
      .data(INET_DIAG_INFO, {reinterpret_cast<const char*>(&info), infoSize})
      .bytes();
}

TcpReading readOne(const inet_diag_msg& socket, const tcp_info& info = counters(),
                   std::size_t infoSize = sizeof(tcp_info)) {
  const auto readings = parseSockDiag(message(socket, info, infoSize));
  EXPECT_EQ(readings.size(), 1U);
  return readings.empty() ? TcpReading{} : readings[0];
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
  const TcpReading socket =
      readOne(ipv4Socket("10.0.0.1", "10.0.0.2"), counters(), offsetof(tcp_info, tcpi_bytes_sent));
  EXPECT_EQ(socket.received, 1000U + 10 * 52);
  EXPECT_EQ(socket.sent, 5U * 52);
}

TEST(SockDiag, ReadsEverySocketOfADatagram) {
  using test::operator+;
  const Bytes one = message(ipv4Socket("1.2.3.4", "5.6.7.8"));
  EXPECT_EQ(parseSockDiag(one + one).size(), 2U);
  EXPECT_TRUE(parseSockDiag({}).empty());
}

TEST(SockDiag, SkipsWhatIsNoSocket) {
  auto socket = ipv4Socket("1.2.3.4", "5.6.7.8");
  EXPECT_TRUE(parseSockDiag(message(socket, counters(), sizeof(tcp_info), 4711)).empty());
  EXPECT_TRUE(parseSockDiag(NetlinkMessage(SOCK_DIAG_BY_FAMILY, socket).bytes()).empty())
      << "no counters";
  socket.idiag_family = AF_UNIX;
  EXPECT_TRUE(parseSockDiag(message(socket)).empty());
}

TEST(SockDiag, SurvivesEveryTruncationAndLengthsThatLie) {
  const Bytes whole = message(ipv4Socket("1.2.3.4", "5.6.7.8"));
  test::forEachTruncation(whole, [](const Bytes& cut) { EXPECT_TRUE(parseSockDiag(cut).empty()); });
  test::readDamaged(whole, 4, [](const Bytes& bent) {
    EXPECT_LE(parseSockDiag(bent).size(), 1U);
    return 0;
  });
}

TEST(SockDiag, AsksForSocketsThatCanMoveSomething) {
  NetlinkRequest question = tcpRequest(AF_INET6);
  const auto bytes = question.bytes();
  ASSERT_EQ(bytes.size(), sizeof(nlmsghdr) + sizeof(inet_diag_req_v2));
  inet_diag_req_v2 request{};
  std::memcpy(&request, bytes.data() + sizeof(nlmsghdr), sizeof request);
  EXPECT_EQ(request.sdiag_family, AF_INET6);
  EXPECT_EQ(request.idiag_states, 0b1011'0011'1110U) << "none that wait, listen or are closed";
}

} // namespace
} // namespace tidewell::nettop
