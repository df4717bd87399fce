#include "contract/NetworkContract.h"

namespace tidewell::test {
namespace {

TEST_P(NetworkContract, KnowsNoInterfaceThatIsNotThere) {
  for (const char* name :
       {"nosuch0", "", "a-name-longer-than-any-interface-can-have", "eth0\n", "../lo"}) {
    EXPECT_EQ(network->counters().read(name), std::nullopt) << name;
  }
}

TEST_P(NetworkContract, CountsWhatAnInterfaceSendsToTheByte) {
  network->add("tide0");
  const auto before = network->counters().read("tide0");
  ASSERT_TRUE(before);
  network->send("tide0", 1'000);
  network->send("tide0", 500);
  const auto after = network->counters().read("tide0");
  ASSERT_TRUE(after);
  EXPECT_EQ(after->bytesOut - before->bytesOut, 1'500);
}

TEST_P(NetworkContract, ReadsTheNamedInterfaceAlone) {
  network->add("tide0");
  network->add("tide1");
  const auto before = network->counters().read("tide1");
  network->send("tide0", 1'000);
  EXPECT_EQ(network->counters().read("tide1"), before);
}

TEST_P(NetworkContract, ReadsNothingFromAnInterfaceThatWasRemoved) {
  network->add("tide0");
  ASSERT_TRUE(network->counters().read("tide0"));
  network->remove("tide0");
  EXPECT_EQ(network->counters().read("tide0"), std::nullopt);
}

TEST_P(NetworkContract, ShowsNoTrafficWhenAnInterfaceIsMadeAnew) {
  network->add("tide0");
  network->send("tide0", 1'500);
  const auto before = network->counters().read("tide0");
  network->remove("tide0");
  network->add("tide0");
  const auto after = network->counters().read("tide0");
  ASSERT_TRUE(before && after);
  EXPECT_LE(after->bytesOut, before->bytesOut);
}

TEST_P(NetworkContract, NamesNoInterfaceBeforeThereIsARoute) {
  network->add("tide0");
  EXPECT_EQ(network->configuration().primaryInterface(), std::nullopt);
}

TEST_P(NetworkContract, NamesTheInterfaceThatTheRouteLeavesThrough) {
  network->add("tide0");
  network->add("tide1");
  network->route("tide1");
  EXPECT_EQ(network->configuration().primaryInterface(), "tide1");
  network->route("tide0");
  EXPECT_EQ(network->configuration().primaryInterface(), "tide0");
}

TEST_P(NetworkContract, StandsByItsAnswerWhileTheRouteIsGoneAndTheDeviceIsNot) {
  network->add("tide0");
  network->route("tide0");
  ASSERT_EQ(network->configuration().primaryInterface(), "tide0");
  network->route(std::nullopt);
  EXPECT_EQ(network->configuration().primaryInterface(), "tide0");
  network->remove("tide0");
  EXPECT_EQ(network->configuration().primaryInterface(), std::nullopt);
}

} // namespace
} // namespace tidewell::test
