#include "helpers/nettop/TcpTraffic.h"

#include <gtest/gtest.h>

#include <utility>

namespace tidewell::nettop {
namespace {

TcpReading socket(std::uint64_t cookie, std::uint64_t received, std::uint64_t sent,
                  std::uint32_t inode = 5) {
  TcpReading reading;
  reading.cookie = cookie;
  reading.inode = inode;
  reading.user = inode == 0 ? 0 : 1000;
  reading.local = {{1}, static_cast<std::uint16_t>(cookie)};
  reading.remote = {{2}, 80};
  reading.received = received;
  reading.sent = sent;
  return reading;
}

TcpReadings readings(std::initializer_list<TcpReading> sockets) {
  TcpReadings result;
  for (const TcpReading& one : sockets) {
    result.emplace(one.cookie, one);
  }
  return result;
}

/// What the only socket that moved anything received and sent.
using Moved = std::pair<std::uint64_t, std::uint64_t>;
Moved moved(const std::vector<TcpReading>& movement) {
  EXPECT_EQ(movement.size(), 1U);
  return movement.empty() ? Moved() : Moved(movement[0].received, movement[0].sent);
}

TEST(TcpMovement, IsTheDifferenceOfTwoReadings) {
  const TcpReadings before = readings({socket(1, 100, 10)});
  EXPECT_EQ(moved(tcpMovement(before, readings({socket(1, 150, 17)}), {})), Moved(50, 7));
  EXPECT_TRUE(tcpMovement(before, before, {}).empty()) << "it stood still";
  EXPECT_EQ(moved(tcpMovement(before, readings({socket(1, 50, 11)}), {})), Moved(0, 1))
      << "a counter that went back";
}

TEST(TcpMovement, CountsANewSocketFromItsBeginning) {
  EXPECT_EQ(moved(tcpMovement({}, readings({socket(1, 9, 8)}), {})), Moved(9, 8));
}

TEST(TcpMovement, CountsTheLastBytesOfASocketThatEnded) {
  const auto movement =
      tcpMovement(readings({socket(1, 100, 10, 42)}), {}, readings({socket(1, 130, 10, 0)}));
  EXPECT_EQ(moved(movement), Moved(30, 0));
  EXPECT_EQ(movement.at(0).inode, 42U) << "by which its holder may still be known";
  EXPECT_EQ(movement.at(0).user, 1000U);
}

TEST(TcpMovement, CountsASocketOnceThatEndedDuringTheSecondReading) {
  EXPECT_EQ(moved(tcpMovement({}, readings({socket(1, 9, 8)}), readings({socket(1, 10, 8)}))),
            Moved(10, 8));
}

TEST(TcpMovement, LeavesOutTheMachinesConversationWithItself) {
  TcpReading loopback = socket(1, 9, 9);
  loopback.isLoopback = true;
  TcpReading client = socket(2, 5, 6);
  TcpReading server = socket(3, 6, 5);
  server.local = client.remote;
  server.remote = client.local;
  EXPECT_TRUE(tcpMovement({}, readings({loopback, client, server}), {}).empty());
  EXPECT_EQ(tcpMovement({}, readings({loopback, client}), {}).size(), 1U);
}

} // namespace
} // namespace tidewell::nettop
