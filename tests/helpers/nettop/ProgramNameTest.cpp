#include "helpers/nettop/ProgramName.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace tidewell::nettop {
namespace {

TEST(ProgramName, IsFitForTheOutputAndItsReader) {
  for (const auto& [bytes, name] : std::initializer_list<std::pair<std::string, const char*>>{
           {"firefox", "firefox"},
           {"Web Content", "Web Content"},
           {"Überträger", "Überträger"},
           {"🌊-1", "🌊-1"},
           {"-", "-"},
           {"a:b/c", "a:b/c"},
           {"com.example.agent", "com_example_agent"},
           {"a (b)", "a _b_"},
           {"\uFF08unknown\uFF09", "_unknown_"}, // wide parentheses
           {"fire\u200Bfox", "fire_fox"},        // of no width
           {"fire\u00ADfox\uFEFF", "fire_fox_"},
           {"user\u00A0root", "user_root"},
           {"\U000E0041", "_"},
           {" fire  fox ", "_fire _fox_"},
           {"a,b\nc\td\re\x7F", "a_b_c_d_e_"},
           {{"a\0b", 3}, "a_b"},
           {"caf\xE9", "caf_"},
           {"\xF0\x9F\x8C", "___"},
           {"a\u202Eb", "a_b"}, // a reversal of direction
           {"", "_"},
           {"kernel_task", "kernel_task_"},
           {"kernel.task", "kernel_task_"},
           {"mDNSResponder", "mDNSResponder_"}}) {
    EXPECT_EQ(printableName(bytes), name);
  }
}

} // namespace
} // namespace tidewell::nettop
