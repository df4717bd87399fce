#include "helpers/nettop/Rows.h"

#include <gtest/gtest.h>

namespace tidewell::nettop {
namespace {

const UserNames users{{0, "root"}, {1000, "anna"}};

TcpReading moved(std::uint32_t inode, std::uint32_t user, std::uint64_t received,
                 std::uint64_t sent) {
  TcpReading socket;
  socket.inode = inode;
  socket.user = user;
  socket.received = received;
  socket.sent = sent;
  return socket;
}

TEST(DiagRows, NameTheProcessesThatCanBeSeen) {
  const Holders holders{{11, {"curl", 7, 1000}}, {12, {"curl", 7, 1000}}, {13, {"ssh", 8, 1000}}};
  const auto rows = diagRows({moved(11, 1000, 1, 2), moved(12, 1000, 3, 4), moved(13, 1000, 5, 6)},
                             holders, users, {9, 12});
  EXPECT_EQ(rows, (std::vector<ProcessTraffic>{
                      {"curl", 7, 1000, 4, 6}, {"ssh", 8, 1000, 5, 6}, {"other traffic"}}));
}

TEST(DiagRows, JoinWhatCannotBeSeenByUser) {
  const auto rows =
      diagRows({moved(11, 0, 1, 1), moved(12, 0, 1, 1), moved(13, 5555, 1, 1)}, {}, users, {});
  EXPECT_EQ(rows, (std::vector<ProcessTraffic>{
                      {"user root", 0, 0, 2, 2}, {"user 5555", 0, 5555, 1, 1}, {"other traffic"}}));
}

TEST(DiagRows, KnowNothingOfASocketThatIsGone) {
  EXPECT_EQ(diagRows({moved(0, 0, 1, 2)}, {}, users, {}).at(0),
            (ProcessTraffic{"unknown", 0, ProcessTraffic::nobody, 1, 2}));
}

TEST(DiagRows, PutTheRestOfTheInterfacesTrafficIntoARowOfItsOwn) {
  const auto rows = diagRows({moved(11, 0, 100, 50)}, {}, users, {1000, 40});
  EXPECT_EQ(rows.back(), (ProcessTraffic{"other traffic", 0, ProcessTraffic::nobody, 900, 0}));
}

TEST(Visibility, FoldsTheProgramsOfOthersIntoOneRowForEachOfThem) {
  const std::vector<ProcessTraffic> rows{{"mine", 5, 1000, 1, 1},
                                         {"theirs", 6, 0, 2, 2},
                                         {"theirs too", 7, 0, 3, 3},
                                         {"guest's", 8, 77, 4, 4},
                                         {"unknown", 0, ProcessTraffic::nobody, 5, 5}};
  EXPECT_EQ(foldOthers(rows, 1000, users),
            (std::vector<ProcessTraffic>{{"mine", 5, 1000, 1, 1},
                                         {"unknown", 0, ProcessTraffic::nobody, 5, 5},
                                         {"user root", 0, 0, 5, 5},
                                         {"user 77", 0, 77, 4, 4}}));
}

TEST(UserNames, AreReadFromWholeLines) {
  EXPECT_EQ(parseUserNames("root:x:0:0:root:/root:/bin/sh\n\nbroken\n:x:5:\nanna:x:1000:1000\n"
                           "second:x:1000:1\nbad:x:-1:\nbig:x:4294967296:\nlast:x:4294967294:"),
            (UserNames{{0, "root"}, {1000, "anna"}, {4294967294, "last"}}));
  EXPECT_TRUE(parseUserNames("").empty());
}

} // namespace
} // namespace tidewell::nettop
