#include "helpers/nettop/Options.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace tidewell::nettop {
namespace {

using Words = std::vector<std::string_view>;

const Words usual{"-P", "-L", "1", "-J", "bytes_in,bytes_out", "-x"};

Words with(std::string_view word) {
  Words words = usual;
  words.push_back(word);
  return words;
}

TEST(NettopOptions, AreTheSixThatTheServiceGives) { EXPECT_EQ(parseOptions(usual), Route::best); }

TEST(NettopOptions, MayNameARoute) {
  EXPECT_EQ(parseOptions(with("--route=bpf")), Route::bpf);
  EXPECT_EQ(parseOptions(with("--route=diag")), Route::diag);
}

TEST(NettopOptions, AreNothingElse) {
  Words swapped = usual;
  swapped[2] = "2";
  Words longer = with("--route=bpf");
  longer.emplace_back("-x");
  for (const Words& words : {Words{}, Words{"-P"}, swapped, longer, with("--route="), with("")}) {
    EXPECT_EQ(parseOptions(words), std::nullopt);
  }
}

} // namespace
} // namespace tidewell::nettop
