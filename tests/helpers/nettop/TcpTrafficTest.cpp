#include "helpers/nettop/TcpTraffic.h"

#include <gtest/gtest.h>

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

TEST(TcpMovement, IsTheDifferenceOfTwoReadings) {
  const auto movement =
      tcpMovement(readings({socket(1, 100, 10)}), readings({socket(1, 150, 17)}), {});
  ASSERT_EQ(movement.size(), 1U);
  EXPECT_EQ(movement[0].received, 50U);
  EXPECT_EQ(movement[0].sent, 7U);
}

TEST(TcpMovement, LeavesOutWhatStoodStill) {
  EXPECT_TRUE(tcpMovement(readings({socket(1, 5, 5)}), readings({socket(1, 5, 5)}), {}).empty());
}

TEST(TcpMovement, CountsANewSocketFromItsBeginning) {
  const auto movement = tcpMovement({}, readings({socket(1, 9, 8)}), {});
  ASSERT_EQ(movement.size(), 1U);
  EXPECT_EQ(movement[0].received, 9U);
}

TEST(TcpMovement, CountsTheLastBytesOfASocketThatEnded) {
  const auto movement =
      tcpMovement(readings({socket(1, 100, 10, 42)}), {}, readings({socket(1, 130, 10, 0)}));
  ASSERT_EQ(movement.size(), 1U);
  EXPECT_EQ(movement[0].received, 30U);
  EXPECT_EQ(movement[0].inode, 42U) << "by which its holder may still be known";
  EXPECT_EQ(movement[0].user, 1000U);
}

TEST(TcpMovement, CountsASocketOnceThatEndedDuringTheSecondReading) {
  const auto movement = tcpMovement({}, readings({socket(1, 9, 8)}), readings({socket(1, 10, 8)}));
  ASSERT_EQ(movement.size(), 1U);
  EXPECT_EQ(movement[0].received, 10U);
}

TEST(TcpMovement, TakesACounterThatWentBackForOneThatStoodStill) {
  const auto movement =
      tcpMovement(readings({socket(1, 100, 10)}), readings({socket(1, 50, 11)}), {});
  ASSERT_EQ(movement.size(), 1U);
  EXPECT_EQ(movement[0].received, 0U);
  EXPECT_EQ(movement[0].sent, 1U);
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
