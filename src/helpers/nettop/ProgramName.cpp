#include "helpers/nettop/ProgramName.h"

#include "base/DisplayText.h"
#include "base/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tidewell::nettop {
namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

// Unicode's property Default_Ignorable_Code_Point, its spaces (category Zs) other than U+0020, and
// other characters that leave no mark.
constexpr std::array<Range, 23> unseen = {{
    {0x00A0, 0x00A0},   {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},
    {0x115F, 0x1160},   {0x1680, 0x1680},   {0x17B4, 0x17B5},   {0x180B, 0x180F},
    {0x2000, 0x200F},   {0x2028, 0x202F},   {0x205F, 0x206F},   {0x2800, 0x2800},
    {0x3000, 0x3000},   {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB},   {0x13430, 0x1343F}, {0x16FE4, 0x16FE4},
    {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
}};

// Parentheses and what looks like them.
constexpr std::array<Range, 13> parentheses = {{{'(', ')'},
                                                {0x207D, 0x207E},
                                                {0x208D, 0x208E},
                                                {0x239B, 0x23A0},
                                                {0x2768, 0x276B},
                                                {0x27EE, 0x27EF},
                                                {0x2985, 0x2986},
                                                {0x2E28, 0x2E29},
                                                {0xFD3E, 0xFD3F},
                                                {0xFE35, 0xFE36},
                                                {0xFE59, 0xFE5A},
                                                {0xFF08, 0xFF09},
                                                {0xFF5F, 0xFF60}}};

bool isIn(const auto& ranges, std::uint32_t codePoint) {
  return std::ranges::any_of(ranges, [codePoint](const Range& range) {
    return range.first <= codePoint && codePoint <= range.last;
  });
}

bool isReplaced(std::uint32_t codePoint) {
  constexpr std::uint32_t replacement = 0xFFFD; // what is already replaced
  return codePoint == '.' || codePoint == ',' || codePoint == replacement ||
         isIn(unseen, codePoint) || isIn(parentheses, codePoint);
}

/// A space is seen only between two other characters.
bool isUnseenSpace(std::string_view before, std::string_view here) {
  return here.front() == ' ' && (before.empty() || before.back() == ' ' || here.size() == 1);
}

} // namespace

std::string printableName(std::string_view bytes) {
  const std::string text = displayText(bytes);
  std::string name;
  for (std::string_view rest = text; !rest.empty();) {
    const Utf8Character character = firstCharacter(rest).value_or(Utf8Character{0xFFFD, 1});
    if (isReplaced(character.codePoint) || isUnseenSpace(name, rest)) {
      name += '_';
    } else {
      name += rest.substr(0, character.size);
    }
    rest.remove_prefix(character.size);
  }
  // The resident's reader skips these two names, which on another system are the kernel and a
  // system service. Here they are ordinary programs, and are shown under a changed name.
  if (name.empty() || name == "kernel_task" || name == "mDNSResponder") {
    name += '_';
  }
  return name;
}

} // namespace tidewell::nettop
