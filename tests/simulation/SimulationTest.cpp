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

constexpr Seconds month = 30.0 * 86400.0;
constexpr std::uint64_t usualSeeds = 12;

/// A whole number from the environment.
std::optional<std::uint64_t> fromEnvironment(const char* name) {
  const char* const text = std::getenv(name);
  const auto number = text == nullptr ? std::nullopt : parseDouble(text);
  return number && *number >= 0.0 ? std::optional(static_cast<std::uint64_t>(*number))
                                  : std::nullopt;
}

/// The one of TIDEWELL_SEED, else the first TIDEWELL_SEEDS.
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

class Simulated : public testing::TestWithParam<std::uint64_t> {};

/// That the month had everything in it that the rules are about.
void expectAFullMonth(const Simulation& world) {
  EXPECT_GT(world.sampling.published(), 50'000);
  EXPECT_GT(world.tools.lostProbes, 1'000);
  EXPECT_GT(world.toolModel.lists(), 1'000);
  EXPECT_GT(world.toolModel.tests(), 20);
  EXPECT_GT(world.notices.authorizations(), 20);
  EXPECT_EQ(world.notices.sent().size(), 4U);
  for (const auto& [kind, count] : world.notices.sent()) {
    EXPECT_GT(count, 20) << kind;
  }
  for (const int count : world.panel.statuses()) {
    EXPECT_GT(count, 1'000);
  }
}

TEST_P(Simulated, MonthBreaksNoRule) {
  Simulation world(GetParam());
  Scenario(world).play(month);
  if (const auto& finding = world.findings.first()) {
    ADD_FAILURE() << "seed " << GetParam() << ' ' << *finding
                  << "\nto see it again: TIDEWELL_SEED=" << GetParam() << ' '
                  << testing::internal::GetArgvs().front();
  } else {
    expectAFullMonth(world);
  }
  world.destroy();
  world.machine.scheduler.advance(60.0); // no task may be blocked when its machine goes
}

INSTANTIATE_TEST_SUITE_P(Seed, Simulated, testing::ValuesIn(seeds()),
                         [](const auto& seed) { return std::to_string(seed.param); });

} // namespace
} // namespace tidewell::test
