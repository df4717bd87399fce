#include "CountedMemory.h"
#include "Scenario.h"

#include "base/NumberText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {
namespace {

constexpr Seconds day = 86400.0;
constexpr double month = 30.0;
constexpr std::uint64_t usualSeeds = 50;

/// An integer from the environment.
std::optional<std::uint64_t> fromEnvironment(const char* name) {
  const char* const text = std::getenv(name);
  const auto number = text == nullptr ? std::nullopt : parseDouble(text);
  return number && *number >= 0.0 ? std::optional(static_cast<std::uint64_t>(*number))
                                  : std::nullopt;
}

/// TIDEWELL_SEED alone, else the first TIDEWELL_SEEDS.
std::vector<std::uint64_t> seeds() {
  if (const auto one = fromEnvironment("TIDEWELL_SEED")) {
    return {*one};
  }
  std::vector<std::uint64_t> all;
  for (std::uint64_t seed = 1; seed <= fromEnvironment("TIDEWELL_SEEDS").value_or(usualSeeds);
       ++seed) {
    all.push_back(seed);
  }
  return all;
}

/// The days simulated for a seed: TIDEWELL_DAYS, else a month for the first and six hours for the
/// others.
double daysOf(std::uint64_t seed) {
  const char* const days = std::getenv("TIDEWELL_DAYS");
  return (days == nullptr ? std::nullopt : parseDouble(days)).value_or(seed == 1 ? month : 0.25);
}

class Simulated : public testing::TestWithParam<std::uint64_t> {};

/// Checks that everything the rules are about happened in the month.
void expectAFullMonth(const Simulation& world) {
  EXPECT_GT(world.sampling.published(), 50'000);
  EXPECT_GT(world.tools.lostProbes, 1'000);
  EXPECT_GT(world.tools.floods, 100);
  EXPECT_GT(world.toolModel.lists(), 1'000);
  EXPECT_GT(world.toolModel.tests(), 20);
  EXPECT_GT(world.notices.authorizations(), 20);
  EXPECT_EQ(world.notices.sent().size(), 4U);
  for (const auto& [kind, count] : world.notices.sent()) {
    EXPECT_GT(count, 20) << kind;
  }
  EXPECT_GT(world.refusals(), 50);
  EXPECT_GT(world.paths.nights(), 50);
  EXPECT_GT(world.paths.retries(), 50);
  EXPECT_GT(world.noticeServer.received(), 100);
  EXPECT_GT(world.noticeServer.receivedInhibited(), 50);
  EXPECT_GT(world.tools.sounds, 50);
  for (const int count : world.panel.statuses()) {
    EXPECT_GT(count, 1'000);
  }
  EXPECT_GT(world.bus.connection(), 50);
  EXPECT_GT(world.host.takings(), 100);
  EXPECT_GT(world.host.menus(), 50);
  EXPECT_GT(world.reader.readings(), 50);
  EXPECT_GT(world.windows.starts(), 100);
  EXPECT_GT(world.windows.kills(), 5);
  EXPECT_GT(world.preferences.foreignWrites(), 100);
  EXPECT_GT(CountedMemory::refusals(), 10);
}

TEST_P(Simulated, LifeBreaksNoRule) {
  const double days = daysOf(GetParam());
  Simulation world(GetParam());
  Scenario scenario(world);
  if (fromEnvironment("TIDEWELL_TRACE").value_or(0) != 0) {
    scenario.trace();
  }
  scenario.play(days * day);
  if (const auto& finding = world.findings.first()) {
    ADD_FAILURE() << "seed " << GetParam() << ' ' << *finding
                  << "\nto see it again: TIDEWELL_SEED=" << GetParam() << " TIDEWELL_DAYS=" << days
                  << ' ' << testing::internal::GetArgvs().front();
  } else if (days >= month) {
    expectAFullMonth(world);
    EXPECT_EQ(scenario.censuses(), static_cast<int>(days));
  }
  world.destroy();
  world.machine.scheduler.settle();
}

INSTANTIATE_TEST_SUITE_P(Seed, Simulated, testing::ValuesIn(seeds()),
                         [](const auto& seed) { return std::to_string(seed.param); });

} // namespace
} // namespace tidewell::test
